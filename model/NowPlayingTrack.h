#pragma once

#include <string>

namespace velmor {

/// What a now-playing reader reports.
struct NowPlayingTrack {
  std::string title;
  std::string artist;
  /// "" when unknown, like `genre` and `key`.
  std::string album;
  std::string genre;
  /// Beats per minute; 0 when unknown.
  double bpm = 0;
  /// In any notation.
  std::string key;
  /// Display name of the application that plays the track.
  std::string source;
  /// How the track was found, for example "djay Pro play history".
  std::string detection;

  bool operator==(const NowPlayingTrack&) const = default;
};

} // namespace velmor
