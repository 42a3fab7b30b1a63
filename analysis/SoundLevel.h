#pragma once

#include <optional>
#include <string_view>

namespace velmor {

/// How loud a recording is, in decibels below the loudest that it can hold (0 dB). Any thread.
struct SoundLevel {
  /// What a recording without any sound has.
  static constexpr double silence = -100;

  double peak = silence;
  /// The root mean square over the whole recording.
  double average = silence;

  /// Of a WAV file with 16 bits a sample; nothing for any other, or one without samples.
  [[nodiscard]] static std::optional<SoundLevel> of(std::string_view wav);
};

} // namespace velmor
