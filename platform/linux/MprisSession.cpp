#include "platform/linux/MprisSession.h"

#include "platform/linux/MprisDescription.h"
#include "platform/linux/MprisSessionChoice.h"

namespace velmor {

MprisSession::MprisSession(std::shared_ptr<MprisBus> sessionBus) : bus(std::move(sessionBus)) {}

std::optional<bool> MprisSession::nowPlayingApplicationIsPlaying(Seconds timeout) {
  const auto* playing = player(timeout);
  if (!hasAnswer) return std::nullopt;
  return playing && playing->status == MprisPlayer::Status::Playing;
}

std::optional<NowPlayingInfo> MprisSession::nowPlayingInfo(Seconds timeout) {
  const auto* playing = player(timeout);
  if (!playing) return std::nullopt;
  return velmor::nowPlayingInfo(*playing);
}

std::optional<std::string> MprisSession::nowPlayingClient(Seconds timeout) {
  const auto* playing = player(timeout);
  if (!playing) return std::nullopt;
  return bundleIdentifier(*playing);
}

const MprisPlayer* MprisSession::player(Seconds timeout) {
  if (!hasRead) {
    hasRead = true;
    const auto players = bus->players(timeout);
    hasAnswer = players.has_value();
    const auto* chosen = players ? chosenSession(*players) : nullptr;
    if (chosen) current = *chosen;
  }
  return current ? &*current : nullptr;
}

} // namespace velmor
