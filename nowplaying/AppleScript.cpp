#include "nowplaying/AppleScript.h"

#include "model/Text.h"
#include "nowplaying/NowPlayingError.h"
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

} // namespace velmor
