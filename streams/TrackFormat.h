#pragma once

#include "model/Records.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// A line about a track as the user wants it: "{artist} - {title} [{bpm} BPM, {key}]".
///
/// A field that is empty takes the round or square brackets around it with it, with everything in
/// them and the blanks before them. "{{" and "}}" stand for braces. Any thread.
class TrackFormat {
public:
  /// Throws VelmorError for a field that there is not and for a brace that stands alone.
  explicit TrackFormat(std::string_view format);

  /// One line without line feed and control characters, and without blanks at its ends.
  [[nodiscard]] std::string line(const NowPlayingTrack& track) const;

  /// The names of all fields, as they are told to the user: "title, artist, ...".
  [[nodiscard]] static std::string fieldNames();

private:
  /// A text, a field, or what stands in brackets.
  struct Piece {
    enum class Kind { text, field, brackets };
    Kind kind = Kind::text;
    std::string text;
    /// Of brackets, which are its first and last piece.
    std::vector<Piece> inside;
  };
  class Reader;

  /// False when a field right among the pieces is empty.
  static bool append(std::string& line, const std::vector<Piece>& pieces,
                     const NowPlayingTrack& track);

  std::vector<Piece> pieces;
};

} // namespace velmor
