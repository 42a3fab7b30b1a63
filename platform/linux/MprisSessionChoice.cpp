#include "platform/linux/MprisSessionChoice.h"

#include <string_view>
#include <tuple>

namespace velmor {

namespace {

int rank(const MprisPlayer& player) {
  using Status = MprisPlayer::Status;
  const auto isGiven = [](const auto& text) { return text && !text->empty(); };
  const bool saysWhat = isGiven(player.title) || isGiven(player.artist);
  if (player.status == Status::Playing) return saysWhat ? 3 : 2;
  return player.status == Status::Paused && saysWhat ? 1 : 0;
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

bool isPlayerName(const std::string& busName) {
  constexpr std::string_view mirror = "org.mpris.MediaPlayer2.playerctld";
  return busName.starts_with(MprisPlayer::busNamePrefix) && busName != mirror;
}

} // namespace velmor
