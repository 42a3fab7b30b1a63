#include "platform/linux/media/MprisMediaRemote.h"

#include "platform/linux/media/MprisBus.h"

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace velmor {

namespace {

int rank(const MprisPlayer& player) {
  using Status = MprisPlayer::Status;
  const auto isGiven = [](const auto& text) { return text && !text->empty(); };
  const bool saysWho = isGiven(player.artist) || isGiven(player.albumArtist);
  const int told = (isGiven(player.title) ? 1 : 0) + (saysWho ? 1 : 0);
  if (player.status == Status::Playing) return 3 + told;
  return player.status == Status::Paused ? told : 0;
}

bool isBetter(const MprisPlayer& player, const MprisPlayer& other) {
  // The names change sides, since the first one is the better one.
  return std::make_tuple(rank(player), player.beganPlaying, std::string_view(other.busName)) >
         std::make_tuple(rank(other), other.beganPlaying, std::string_view(player.busName));
}

} // namespace

const MprisPlayer* chosenSession(const std::vector<MprisPlayer>& players) {
  const MprisPlayer* best = nullptr;
  for (const auto& player : players) {
    if (rank(player) > 0 && (!best || isBetter(player, *best))) best = &player;
  }
  return best;
}

NowPlayingInfo nowPlayingInfo(const MprisPlayer& player) {
  NowPlayingInfo info;
  // Players keep the speed that they last had, so it counts only while one plays.
  const bool plays = player.status == MprisPlayer::Status::Playing;
  if (const auto rate = plays ? player.rate : 0.0) info.emplace(nowPlayingKey::playbackRate, *rate);
  const auto add = [&](const char* key, const std::optional<std::string>& text) {
    if (text) info.emplace(key, *text);
  };
  add(nowPlayingKey::title, player.title);
  add(nowPlayingKey::artist, player.artist);
  add(nowPlayingKey::albumArtist, player.albumArtist);
  add(nowPlayingKey::album, player.album);
  add(nowPlayingKey::bundleIdentifier, bundleIdentifier(player));
  return info;
}

namespace {

/// All queries answer from one reading of the players, which the first of them makes.
class MprisSession final : public MediaRemoteSession {
public:
  explicit MprisSession(std::shared_ptr<MprisBus> sessionBus) : bus(std::move(sessionBus)) {}

  std::optional<bool> nowPlayingApplicationIsPlaying(Seconds timeout) override {
    const auto* player = chosen(timeout);
    if (!players) return std::nullopt;
    return player && player->status == MprisPlayer::Status::Playing;
  }

  std::optional<NowPlayingInfo> nowPlayingInfo(Seconds timeout) override {
    const auto* player = chosen(timeout);
    return player ? std::optional(velmor::nowPlayingInfo(*player)) : std::nullopt;
  }

  std::optional<std::string> nowPlayingClient(Seconds timeout) override {
    const auto* player = chosen(timeout);
    return player ? std::optional(bundleIdentifier(*player)) : std::nullopt;
  }

private:
  /// Null when no player has a session, or the bus has not answered.
  const MprisPlayer* chosen(Seconds timeout) {
    if (!std::exchange(hasRead, true)) players = bus->players(timeout);
    return players ? chosenSession(*players) : nullptr;
  }

  std::shared_ptr<MprisBus> bus;
  bool hasRead = false;
  /// Nothing when the bus has not answered.
  std::optional<std::vector<MprisPlayer>> players;
};

} // namespace

MprisMediaRemote::MprisMediaRemote(MprisBusSource& mprisBuses) : buses(mprisBuses) {}

std::unique_ptr<MediaRemoteSession> MprisMediaRemote::open() {
  auto bus = buses.current();
  return bus ? std::make_unique<MprisSession>(std::move(bus)) : nullptr;
}

} // namespace velmor
