#include "platform/linux/AtspiApplicationElement.h"

#include "platform/linux/AtspiElement.h"
#include "platform/linux/AtspiTree.h"
#include "platform/linux/EwmhClient.h"

#include <algorithm>

namespace velmor {

AtspiApplicationElement::AtspiApplicationElement(
    std::shared_ptr<AtspiConversation> programConversation, std::int32_t processIdentifier)
    : conversation(std::move(programConversation)), process(processIdentifier) {}

AccessibilityResult AtspiApplicationElement::attribute(const std::string& attributeName) {
  const bool isKnown = attributeName == "AXWindows" || attributeName == "AXChildren" ||
                       attributeName == "AXFocusedWindow";
  if (!isKnown) return {accessibilityError::attributeUnsupported};
  readWindows();
  if (!windows) return {accessibilityError::cannotComplete};
  return attributeName == "AXFocusedWindow" ? focusedWindow() : windowList();
}

int AtspiApplicationElement::setAttribute(const std::string&, const AccessibilityValue&) {
  return accessibilityError::attributeUnsupported;
}

void AtspiApplicationElement::readWindows() {
  if (windowsRead) return;
  windowsRead = true;
  windows = AtspiTree(*conversation).windows();
  nameUnnamedWindows();
}

/// A minimised window may lose its accessible name; the window manager still knows its title.
void AtspiApplicationElement::nameUnnamedWindows() {
  if (!windows) return;
  const auto isUnnamed = [](const auto& window) { return window->name.empty(); };
  if (std::ranges::none_of(*windows, isUnnamed)) return;

  auto titles = readEwmhTitles(process);
  for (const auto& window : *windows) {
    const auto own = std::ranges::find(titles, window->name);
    if (own != titles.end()) titles.erase(own);
  }
  auto title = titles.begin();
  for (const auto& window : *windows) {
    if (title == titles.end()) return;
    if (isUnnamed(window)) window->name = *title++;
  }
}

AccessibilityResult AtspiApplicationElement::windowList() const {
  return {accessibilityError::success, AtspiElement::wrap(conversation, *windows)};
}

AccessibilityResult AtspiApplicationElement::focusedWindow() const {
  const auto active =
      std::ranges::find_if(*windows, [](const auto& window) { return window->active; });
  if (active == windows->end()) return {accessibilityError::noValue};
  return {accessibilityError::success,
          AccessibilityElementPtr(std::make_shared<AtspiElement>(conversation, *active))};
}

} // namespace velmor
