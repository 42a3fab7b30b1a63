#pragma once

#include "platform/MediaRemote.h"
#include "platform/linux/MprisBus.h"

namespace velmor {

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
