#pragma once

#include "platform/linux/glib/Variants.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// What a media player tells of itself over MPRIS, the players' interface on the session bus.
/// Members that it lacks or gives in another type are empty.
struct MprisPlayer {
  enum class Status { Stopped, Paused, Playing };

  /// With the prefix "org.mpris.MediaPlayer2.".
  std::string busName;
  /// The process behind the name; 0 when the bus does not tell.
  std::int32_t process = 0;
  /// The name by which people know it.
  std::optional<std::string> identity;
  std::optional<std::string> desktopEntry;
  Status status = Status::Stopped;
  /// The speed, 1 being normal; always finite.
  std::optional<double> rate;
  std::optional<std::string> title;
  /// Several artists are joined by ", "; one may also come as a plain text.
  std::optional<std::string> artist;
  std::optional<std::string> albumArtist;
  std::optional<std::string> album;
  /// Larger for a player that began to play later; 0 when that was not seen.
  std::uint64_t beganPlaying = 0;

  static constexpr auto busNamePrefix = "org.mpris.MediaPlayer2.";
};

/// True for the name of a player; false for that of a mirror, which repeats what others say.
[[nodiscard]] bool isPlayerName(const std::string& busName);

/// A player as its properties describe it: the dictionaries (a{sv}) of the interfaces
/// org.mpris.MediaPlayer2.Player and org.mpris.MediaPlayer2, the latter null when it has none.
[[nodiscard]] MprisPlayer playerFromProperties(const std::string& busName, const VariantPtr& player,
                                               const VariantPtr& identity);

/// Whether a PlaybackStatus among the properties says "Playing"; nothing when there is none.
[[nodiscard]] std::optional<bool> isPlaying(const VariantPtr& properties);

/// The bundle identifier by which the rest of Velmor knows the program, such as
/// "com.spotify.client"; for other programs the desktop entry, else the bus name without prefix and
/// instance.
[[nodiscard]] std::string bundleIdentifier(const MprisPlayer& player);

/// Whether people call the player by this name, in any letter case.
[[nodiscard]] bool goesByName(const MprisPlayer& player, const std::string& name);

} // namespace velmor
