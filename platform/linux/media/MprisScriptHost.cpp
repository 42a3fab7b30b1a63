#include "platform/linux/media/MprisScriptHost.h"

#include "platform/linux/media/MprisBus.h"
#include "platform/linux/media/MprisSession.h"

#include <algorithm>
#include <string_view>

namespace velmor {

namespace {

constexpr Seconds playerDeadline{2};
constexpr std::string_view scriptStart = "tell application \"";

/// What follows the application's name in each script.
constexpr std::string_view currentTrackScript =
    "\"\n"
    "    try\n"
    "        if player state is not playing then return \"STATE:paused\"\n"
    "        set trackName to name of current track\n"
    "        set trackArtist to artist of current track\n"
    "        set trackAlbum to album of current track\n"
    "        return trackName & (ASCII character 30) & trackArtist & (ASCII character 30) & "
    "trackAlbum\n"
    "    end try\n"
    "end tell";
constexpr std::string_view pausedScript = "\"\n"
                                          "    if player state is paused then return \"yes\"\n"
                                          "end tell\n"
                                          "return \"no\"";

ChildResult failure(const std::string& message) {
  return {.exitStatus = 1, .output = "", .errorOutput = message};
}

ChildResult answer(const std::string& output) {
  return {.exitStatus = 0, .output = output, .errorOutput = ""};
}

std::string answerCurrentTrack(const MprisPlayer& player) {
  if (player.status != MprisPlayer::Status::Playing) return "STATE:paused";
  // A member that a track lacks ends the script inside its try block, without a result.
  if (!player.title || !player.artist || !player.album) return "";
  constexpr auto separator = "\x1E";
  return *player.title + separator + *player.artist + separator + *player.album;
}

std::string answerPaused(const MprisPlayer& player) {
  return player.status == MprisPlayer::Status::Paused ? "yes" : "no";
}

/// The player of that name. Where it has several names on the bus it says the same under each.
std::optional<MprisPlayer> playerNamed(std::string_view name, MprisBusSource& buses) {
  const auto bus = buses.current();
  const auto players = bus ? bus->players(playerDeadline) : std::nullopt;
  if (!players) return std::nullopt;
  const auto found = std::ranges::find_if(
      *players, [name](const MprisPlayer& player) { return goesByName(player, name); });
  return found == players->end() ? std::nullopt : std::optional(*found);
}

} // namespace

MprisScriptHost::MprisScriptHost(MprisBusSource& mprisBuses) : buses(mprisBuses) {}

ChildResult MprisScriptHost::run(const std::string& script, const std::string&) {
  const auto start = scriptStart.size();
  const auto nameEnd = script.find('"', start);
  if (!script.starts_with(scriptStart) || nameEnd == std::string::npos) {
    return failure("This system cannot run the script.");
  }
  const auto name = script.substr(start, nameEnd - start);
  const auto rest = std::string_view(script).substr(nameEnd);
  const bool asksForTrack = rest == currentTrackScript;
  if (!asksForTrack && rest != pausedScript) return failure("This system cannot run the script.");

  const auto player = playerNamed(name, buses);
  if (!player) return failure(name + " does not answer on the session bus.");
  return answer(asksForTrack ? answerCurrentTrack(*player) : answerPaused(*player));
}

} // namespace velmor
