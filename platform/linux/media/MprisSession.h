#pragma once

#include "platform/MediaRemote.h"
#include "platform/linux/media/MprisBus.h"
#include "platform/linux/media/MprisPlayer.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// The player whose session is the system's: one that plays and says what, else one that plays,
/// else one that is paused and says with what. Among equals it is the one that began to play last,
/// then the first by bus name. A process with several names says the same under each, so that
/// which of them is chosen makes no difference. Null when nothing plays or is paused.
[[nodiscard]] const MprisPlayer* chosenSession(const std::vector<MprisPlayer>& players);

/// The player's session under the system's keys, for what it has said.
[[nodiscard]] NowPlayingInfo nowPlayingInfo(const MprisPlayer& player);

/// The identity by which a program goes that is known elsewhere under another one; else the
/// desktop entry, else the bus name's own part without an instance.
[[nodiscard]] std::string bundleIdentifier(const MprisPlayer& player);

/// Whether people call the player by this name, in any letter case.
[[nodiscard]] bool goesByName(const MprisPlayer& player, std::string_view name);

/// The session of the player that counts as the system's. All queries answer from one reading,
/// which the first of them makes.
class MprisSession final : public MediaRemoteSession {
public:
  explicit MprisSession(std::shared_ptr<MprisBus> sessionBus);

  [[nodiscard]] std::optional<bool> nowPlayingApplicationIsPlaying(Seconds timeout) override;
  [[nodiscard]] std::optional<NowPlayingInfo> nowPlayingInfo(Seconds timeout) override;
  [[nodiscard]] std::optional<std::string> nowPlayingClient(Seconds timeout) override;

private:
  /// Null when no player has a session.
  const MprisPlayer* player(Seconds timeout);

  std::shared_ptr<MprisBus> bus;
  bool hasRead = false;
  bool hasAnswer = false;
  std::optional<MprisPlayer> current;
};

} // namespace velmor
