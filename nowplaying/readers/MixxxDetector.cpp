#include "nowplaying/readers/MixxxDetector.h"

#include "base/Text.h"
#include "nowplaying/readers/MixxxLibrary.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "platform/Accessibility.h"
#include "platform/RunningApplications.h"
#include "platform/WindowList.h"

#include <algorithm>
#include <vector>

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

using Windows = std::vector<WindowDescription>;

std::vector<RunningApplication> instances(const Platform& platform) {
  return ProcessUtils::applications(
      platform,
      {.bundleIdentifier = "org.mixxx.mixxx", .identifierFragment = "", .names = {"mixxx"}});
}

/// Of several instances the one whose window is in front comes first, those without a window last.
void sortFrontFirst(std::vector<RunningApplication>& applications, const Windows& windows) {
  std::ranges::stable_sort(applications, {}, [&](const RunningApplication& application) {
    return std::ranges::find(windows, application.processIdentifier,
                             &WindowDescription::ownerProcess) -
           windows.begin();
  });
}

/// The first usable title that the accessibility interface gives; nothing when there is none, or
/// windows may not be read.
std::optional<std::string> accessibilityWindowTitle(const Platform& platform,
                                                    const RunningApplication& application) {
  const auto app = platform.accessibility.application(application.processIdentifier);
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

std::optional<std::string> cgWindowTitle(const Windows& windows,
                                         const RunningApplication& application) {
  for (const auto& window : windows) {
    if (window.ownerProcess != application.processIdentifier) continue;
    if (MixxxDetector::displayText(window.name)) return std::string(text::trimmed(window.name));
  }
  return std::nullopt;
}

} // namespace

NowPlayingTrack MixxxDetector::current(const Platform& platform) {
  if (!isRunning(platform)) throw NowPlayingError::noActiveSession();
  const auto display = displayedTrack(platform);
  return display ? MixxxLibrary::track(platform, *display)
                 : MixxxLibrary::currentFromSetlog(platform);
}

bool MixxxDetector::isRunning(const Platform& platform) {
  return ProcessUtils::isRunning(platform, {"mixxx", "Mixxx"}) || !instances(platform).empty();
}

std::optional<std::string> MixxxDetector::displayedTrack(const Platform& platform) {
  auto applications = instances(platform);
  if (applications.empty()) return std::nullopt;
  const auto windows = platform.windows.list();
  sortFrontFirst(applications, windows);
  for (const auto& application : applications) {
    auto title = accessibilityWindowTitle(platform, application);
    if (!title) title = cgWindowTitle(windows, application);
    if (title) return displayText(*title);
  }
  return std::nullopt;
}

std::optional<std::string> MixxxDetector::displayText(std::string_view windowTitle) {
  constexpr std::string_view suffix = " | Mixxx";
  auto title = text::trimmed(windowTitle);
  if (!title.ends_with(suffix)) return std::nullopt;
  title.remove_suffix(suffix.size());
  title = text::trimmed(title);
  if (title.empty()) return std::nullopt;
  return std::string(text::bounded(title));
}

} // namespace velmor
