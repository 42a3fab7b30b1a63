#include "nowplaying/StreamingAppDetector.h"

#include "base/Text.h"
#include "nowplaying/NowPlayingError.h"
#include "nowplaying/ProcessUtils.h"
#include "platform/ScriptHost.h"
#include "platform/SystemLog.h"

namespace velmor {

namespace {

std::string textOf(const std::string& output) {
  return text::isValidUtf8(output) ? std::string(text::trimmed(output)) : std::string();
}

bool isRefusal(const std::string& errorText) {
  return errorText.find("Not authorized") != std::string::npos ||
         errorText.find("(-1743)") != std::string::npos;
}

} // namespace

std::string runAppleScript(const Platform& platform, const std::string& script,
                           const std::optional<std::string>& permissionLabel) {
  const auto app = permissionLabel.value_or("the media player");
  const auto result = platform.scripts.run(script, app);
  if (result.exitStatus == 0) return textOf(result.output);
  const auto errorText = textOf(result.errorOutput);
  if (isRefusal(errorText)) throw NowPlayingError::automationDenied(app);
  if (!errorText.empty()) platform.log.write("Velmor AppleScript error: " + errorText);
  return {};
}

namespace {

constexpr auto permissionLabel = "the media player";
constexpr char fieldSeparator = '\x1E';

std::string currentTrackScript(const std::string& appName) {
  return "tell application \"" + appName +
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
}

std::string pausedScript(const std::string& appName) {
  return "tell application \"" + appName +
         "\"\n"
         "    if player state is paused then return \"yes\"\n"
         "end tell\n"
         "return \"no\"";
}

} // namespace

std::optional<NowPlayingTrack>
StreamingAppDetector::current(const Platform& platform, const std::string& appName,
                              const std::vector<std::string>& processNames,
                              const std::string& source, const std::string& detection) {
  if (!ProcessUtils::isRunning(platform, processNames)) return std::nullopt;
  const auto answer = runAppleScript(platform, currentTrackScript(appName), permissionLabel);
  if (answer.empty() || answer == "STATE:paused") return std::nullopt;
  const auto pieces = text::split(answer, fieldSeparator, 2);
  if (pieces.size() != 3) return std::nullopt;
  NowPlayingTrack track;
  track.title = text::trimmed(pieces[0]);
  track.artist = text::trimmed(pieces[1]);
  track.album = text::trimmed(pieces[2]);
  if (track.title.empty() || track.artist.empty()) return std::nullopt;
  track.source = source;
  track.detection = detection;
  return track;
}

bool StreamingAppDetector::isPaused(const Platform& platform, const std::string& appName) {
  try {
    return runAppleScript(platform, pausedScript(appName), permissionLabel) == "yes";
  } catch (const std::exception&) {
    return false;
  }
}

} // namespace velmor
