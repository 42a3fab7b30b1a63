#include "nowplaying/MixxxDetector.h"

#include "base/Text.h"
#include "nowplaying/MixxxLibrary.h"
#include "nowplaying/NowPlayingError.h"
#include "nowplaying/ProcessUtils.h"
#include "platform/Accessibility.h"
#include "platform/RunningApplications.h"
#include "platform/WindowList.h"

namespace velmor {

namespace {

/// The attribute's text, trimmed, when it shows a track.
std::optional<std::string> usableTitle(AccessibilityElement& window, const char* attribute) {
  const auto result = window.attribute(attribute);
  if (result.error != accessibilityError::success) return std::nullopt;
  const auto* const title = std::get_if<std::string>(&result.value);
  if (!title || !MixxxDetector::displayText(*title)) return std::nullopt;
  return std::string(text::trimmed(*title));
}

std::optional<RunningApplication> mixxxApplication(const Platform& platform) {
  return ProcessUtils::application(
      platform,
      {.bundleIdentifier = "org.mixxx.mixxx", .identifierFragment = "", .names = {"mixxx"}});
}

} // namespace

NowPlayingTrack MixxxDetector::current(const Platform& platform) {
  if (!isRunning(platform)) throw NowPlayingError::noActiveSession();
  auto title = accessibilityWindowTitle(platform);
  if (!title) title = cgWindowTitle(platform);
  const auto display = title ? displayText(*title) : std::nullopt;
  return display ? MixxxLibrary::track(platform, *display)
                 : MixxxLibrary::currentFromSetlog(platform);
}

bool MixxxDetector::isRunning(const Platform& platform) {
  return ProcessUtils::isRunning(platform, {"mixxx", "Mixxx"}) || mixxxApplication(platform);
}

std::optional<std::string> MixxxDetector::accessibilityWindowTitle(const Platform& platform) {
  const auto application = mixxxApplication(platform);
  if (!application) return std::nullopt;
  const auto app = platform.accessibility.application(application->processIdentifier);
  const auto result = app->attribute("AXWindows");
  if (result.error != accessibilityError::success) return std::nullopt;
  const auto* const windows = std::get_if<std::vector<AccessibilityElementPtr>>(&result.value);
  if (!windows) return std::nullopt;
  for (const auto& window : *windows) {
    for (const auto* const attribute : {"AXTitle", "AXTitleUIElement"}) {
      if (auto title = usableTitle(*window, attribute)) return title;
    }
  }
  return std::nullopt;
}

std::optional<std::string> MixxxDetector::cgWindowTitle(const Platform& platform) {
  const auto application = mixxxApplication(platform);
  if (!application) return std::nullopt;
  for (const auto& window : platform.windows.onScreen()) {
    if (window.ownerProcess != application->processIdentifier) continue;
    if (displayText(window.name)) return std::string(text::trimmed(window.name));
  }
  return std::nullopt;
}

std::optional<std::string> MixxxDetector::displayText(std::string_view windowTitle) {
  constexpr std::string_view suffix = " | Mixxx";
  auto title = text::trimmed(windowTitle);
  if (!title.ends_with(suffix)) return std::nullopt;
  title.remove_suffix(suffix.size());
  title = text::trimmed(title);
  return title.empty() ? std::nullopt : std::optional<std::string>(title);
}

} // namespace velmor
