#include "platform/linux/media/MprisScripts.h"

#include "platform/linux/media/MprisBus.h"
#include "platform/linux/media/MprisPlayer.h"

#include <algorithm>

namespace velmor {

namespace {

constexpr Seconds playerDeadline{2};

std::string currentTrack(const MprisPlayer& player) {
  if (player.status != MprisPlayer::Status::Playing) return PlayerScript::notPlaying;
  if (!player.title || !player.artist || !player.album) return "";
  constexpr auto separator = PlayerScript::fieldSeparator;
  return *player.title + separator + *player.artist + separator + *player.album;
}

} // namespace

std::string answerOf(const MprisPlayer& player, PlayerScript::Question question) {
  if (question == PlayerScript::Question::CurrentTrack) return currentTrack(player);
  return player.status == MprisPlayer::Status::Paused ? PlayerScript::yes : PlayerScript::no;
}

ChildResult answerScript(const PlayerScript& script, MprisBusSource& buses) {
  const auto bus = buses.current();
  const auto players = bus ? bus->players(playerDeadline) : std::nullopt;
  // Where a player has several names on the bus it says the same under each: the first will do.
  for (const auto& player : players.value_or(std::vector<MprisPlayer>())) {
    if (!goesByName(player, script.application)) continue;
    return {.exitStatus = 0, .output = answerOf(player, script.question), .errorOutput = ""};
  }
  return {.exitStatus = 1,
          .output = "",
          .errorOutput = script.application + " does not answer on the session bus."};
}

} // namespace velmor
