#include "nowplaying/readers/StreamingAppDetector.h"

#include "base/Text.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "platform/PlayerScript.h"
#include "platform/ProcessLauncher.h"
#include "platform/SystemLog.h"

namespace velmor {

namespace {

using Question = PlayerScript::Question;

constexpr auto scriptTool = "/usr/bin/osascript";
constexpr auto mediaPlayer = "the media player";

PlayerScript currentTrackScript(const std::string& appName) {
  return {
      Question::CurrentTrack, appName,
      "tell application \"" + appName +
          "\"\n"
          "    try\n"
          "        if player state is not playing then return \"STATE:paused\"\n"
          "        set trackName to name of current track\n"
          "        set trackArtist to artist of current track\n"
          "        set trackAlbum to album of current track\n"
          "        return trackName & (ASCII character 30) & trackArtist & (ASCII character 30) "
          "& trackAlbum\n"
          "    end try\n"
          "end tell"};
}

PlayerScript pausedScript(const std::string& appName) {
  return {Question::IsPaused, appName,
          "tell application \"" + appName +
              "\"\n"
              "    if player state is paused then return \"yes\"\n"
              "end tell\n"
              "return \"no\""};
}

std::string textOf(const std::string& output) {
  return text::isValidUtf8(output) ? std::string(text::trimmed(output)) : std::string();
}

bool isRefusal(const std::string& errorText) {
  return errorText.find("Not authorized") != std::string::npos ||
         errorText.find("(-1743)") != std::string::npos;
}

ChildResult run(const Platform& platform, const PlayerScript& script) {
  if (platform.record.answerScript) return platform.record.answerScript(script);
  // The script is no argument: other programs of this machine can read those.
  return platform.processes.run(
      {.executable = scriptTool, .arguments = {"-"}, .input = script.text});
}

} // namespace

std::string runAppleScript(const Platform& platform, const PlayerScript& script,
                           const std::optional<std::string>& permissionLabel) {
  const auto result = run(platform, script);
  if (result.exitStatus == 0) return textOf(result.output);
  const auto errorText = textOf(result.errorOutput);
  if (isRefusal(errorText))
    throw NowPlayingError::automationDenied(permissionLabel.value_or(mediaPlayer));
  if (!errorText.empty()) platform.log.write("Velmor AppleScript error: " + errorText);
  return {};
}

std::optional<NowPlayingTrack>
StreamingAppDetector::current(const Platform& platform, const std::string& appName,
                              const std::vector<std::string>& processNames,
                              const std::string& source, const std::string& detection) {
  if (!ProcessUtils::isRunning(platform, processNames)) return std::nullopt;
  const auto answer = runAppleScript(platform, currentTrackScript(appName), mediaPlayer);
  if (answer.empty() || answer == PlayerScript::notPlaying) return std::nullopt;
  const auto pieces = text::split(answer, PlayerScript::fieldSeparator, 2);
  if (pieces.size() != 3) return std::nullopt;
  NowPlayingTrack track;
  track.title = text::bounded(text::trimmed(pieces[0]));
  track.artist = text::bounded(text::trimmed(pieces[1]));
  track.album = text::bounded(text::trimmed(pieces[2]));
  if (track.title.empty() || track.artist.empty()) return std::nullopt;
  track.source = source;
  track.detection = detection;
  return track;
}

bool StreamingAppDetector::isPaused(const Platform& platform, const std::string& appName) {
  try {
    return runAppleScript(platform, pausedScript(appName), mediaPlayer) == PlayerScript::yes;
  } catch (const std::exception&) {
    return false;
  }
}

} // namespace velmor
