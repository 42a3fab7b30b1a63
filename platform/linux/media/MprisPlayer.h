#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct _GVariant;

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

/// True for the name of a player, not of a mirror of other players.
[[nodiscard]] bool isPlayerName(const std::string& busName);

/// A player as its properties describe it: the dictionaries (a{sv}) of the interfaces
/// org.mpris.MediaPlayer2.Player and org.mpris.MediaPlayer2, the latter null when it has none.
/// Types are checked before anything is read: GLib ends the process otherwise.
[[nodiscard]] MprisPlayer playerFromProperties(const std::string& busName, _GVariant& player,
                                               _GVariant* identity);

/// Whether a PlaybackStatus among the properties says "Playing"; nothing when there is none.
[[nodiscard]] std::optional<bool> isPlaying(_GVariant& properties);

} // namespace velmor
