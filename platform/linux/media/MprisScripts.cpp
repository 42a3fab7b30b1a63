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
  const auto all = players.value_or(std::vector<MprisPlayer>());
  // Where a player has several names on the bus it says the same under each: the first will do.
  const auto player = std::ranges::find_if(
      all, [&](const auto& each) { return goesByName(each, script.application); });
  const bool answers = player != all.end();
  const bool isNews = buses.isNewFailure(script.application, answers);
  if (answers) {
    return {.exitStatus = 0, .output = answerOf(*player, script.question), .errorOutput = ""};
  }
  // The message goes to the log, and nothing changes there from one look to the next.
  return {.exitStatus = 1,
          .output = "",
          .errorOutput = isNews ? script.application + " does not answer on the session bus." : ""};
}

} // namespace velmor
