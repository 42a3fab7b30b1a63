#pragma once

#include "model/Records.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// What a program asks the running window, one JSON object a line.
struct WindowQuestion {
  enum class Kind { now, follow, suggest };
  Kind kind = Kind::now;
  /// Suggests from the DJ's own music, whatever the model is.
  bool fromCrate = false;

  [[nodiscard]] std::string line() const;
  /// Nothing for what is no question.
  [[nodiscard]] static std::optional<WindowQuestion> read(std::string_view line);
};

/// What the window answers, one JSON object a line. One in which nothing is set only says that the
/// window lives.
struct WindowLine {
  /// Says something about the track.
  bool aboutTrack = false;
  /// Nothing when nothing plays.
  std::optional<NowPlayingTrack> track;
  std::optional<VisionResult> suggestions;
  /// Why there is no answer: a sentence for the user, or "".
  std::string error;

  [[nodiscard]] std::string line() const;
  /// Nothing for what is no answer.
  [[nodiscard]] static std::optional<WindowLine> read(std::string_view line);
};

} // namespace velmor
