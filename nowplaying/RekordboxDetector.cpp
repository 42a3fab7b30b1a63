#include "nowplaying/RekordboxDetector.h"

#include "model/Text.h"
#include "nowplaying/NowPlayingError.h"
#include "nowplaying/ProcessUtils.h"

namespace velmor {

namespace {

constexpr int deepestLevel = 32;
constexpr Size smallestWindow{320, 240};

/// The attribute's value, when it can be read and has this type.
template <typename Value>
std::optional<Value> read(AccessibilityElement& element, const char* attribute) {
  auto result = element.attribute(attribute);
  if (result.error != accessibilityError::success) return std::nullopt;
  auto* const value = std::get_if<Value>(&result.value);
  return value ? std::optional<Value>(std::move(*value)) : std::nullopt;
}

std::optional<std::string> readText(AccessibilityElement& element, const char* attribute) {
  const auto value = read<std::string>(element, attribute);
  if (!value) return std::nullopt;
  const auto trimmed = text::trimmed(*value);
  return trimmed.empty() ? std::nullopt : std::optional<std::string>(trimmed);
}

/// rekordbox describes its decks only to those who ask for the full interface.
void enhanceUserInterface(AccessibilityElement& element) {
  element.setAttribute("AXEnhancedUserInterface", true);
}

AccessibilityElementPtr largest(const std::vector<AccessibilityElementPtr>& windows) {
  AccessibilityElementPtr found;
  double largestArea = 0;
  for (const auto& window : windows) {
    const auto rect = RekordboxDetector::axRect(*window);
    const double area = rect.width() * rect.height();
    if (found && area <= largestArea) continue;
    found = window;
    largestArea = area;
  }
  return found;
}

} // namespace

bool RekordboxDetector::isRunning(const Platform& platform) {
  return rekordboxApplication(platform) || ProcessUtils::isRunning(platform, {"rekordbox"});
}

std::optional<RunningApplication>
RekordboxDetector::rekordboxApplication(const Platform& platform) {
  return ProcessUtils::application(platform, {.bundleIdentifier = "com.pioneerdj.rekordboxdj",
                                              .identifierFragment = "rekordboxdj",
                                              .names = {"rekordbox"},
                                              .skipsTerminated = true});
}

std::vector<RekordboxDeck> RekordboxDetector::readDecksViaAccessibility(const Platform& platform) {
  const auto application = rekordboxApplication(platform);
  if (!application) throw NowPlayingError::noActiveSession();
  const auto app = platform.accessibility.application(application->processIdentifier);
  enhanceUserInterface(*app);
  const auto window = rekordboxWindowElement(app);
  if (!window) throw NowPlayingError::noActiveSession();
  enhanceUserInterface(*window);
  const auto root = axRect(*window);
  if (!(root.width() > smallestWindow.width && root.height() > smallestWindow.height)) {
    throw NowPlayingError::noActiveSession();
  }
  std::vector<UIAText> texts;
  walkUIAText(*window, 0, texts);
  auto decks = parseDecks(texts, root);
  if (decks.empty()) throw NowPlayingError::noActiveSession();
  return decks;
}

AccessibilityElementPtr
RekordboxDetector::rekordboxWindowElement(const AccessibilityElementPtr& app) {
  const auto focused = read<AccessibilityElementPtr>(*app, "AXFocusedWindow");
  if (focused && *focused) return *focused;
  const auto windows = app->attribute("AXWindows");
  if (windows.error == accessibilityError::apiDisabled) {
    throw NowPlayingError::accessibilityDenied("rekordbox");
  }
  if (windows.error != accessibilityError::success) return nullptr;
  const auto* const list = std::get_if<std::vector<AccessibilityElementPtr>>(&windows.value);
  return list ? largest(*list) : nullptr;
}

Rect RekordboxDetector::axRect(AccessibilityElement& element) {
  const auto position = read<Point>(element, "AXPosition");
  const auto size = read<Size>(element, "AXSize");
  if (!position || !size) return {};
  return {*position, *size};
}

std::optional<std::string> RekordboxDetector::elementName(AccessibilityElement& element) {
  const auto title = readText(element, "AXTitle");
  return title ? title : readText(element, "AXValue");
}

void RekordboxDetector::walkUIAText(AccessibilityElement& element, int depth,
                                    std::vector<UIAText>& texts) {
  if (depth > deepestLevel) return;
  if (auto name = elementName(element)) {
    const auto rect = axRect(element);
    if (rect.width() > 0 && rect.height() > 0) texts.push_back({std::move(*name), rect});
  }
  const auto children = read<std::vector<AccessibilityElementPtr>>(element, "AXChildren");
  if (!children) return;
  for (const auto& child : *children)
    walkUIAText(*child, depth + 1, texts);
}

} // namespace velmor
