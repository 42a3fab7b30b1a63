#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velmor {

/// What a media player tells of itself over MPRIS. Members that it lacks or gives in another type
/// are empty.
struct MprisPlayer {
  enum class Status { Stopped, Paused, Playing };

  /// With the prefix "org.mpris.MediaPlayer2.".
  std::string busName;
  /// The process behind the name; 0 when the bus does not tell.
  std::int32_t process = 0;
  /// The name by which it goes for people.
  std::optional<std::string> identity;
  std::optional<std::string> desktopEntry;
  Status status = Status::Stopped;
  std::optional<double> rate;
  std::optional<std::string> title;
  /// Several artists are joined by ", ".
  std::optional<std::string> artist;
  std::optional<std::string> albumArtist;
  std::optional<std::string> album;
  /// Larger for a player that began to play later; 0 when that was not seen.
  std::uint64_t beganPlaying = 0;

  static constexpr auto busNamePrefix = "org.mpris.MediaPlayer2.";
};

} // namespace velmor
