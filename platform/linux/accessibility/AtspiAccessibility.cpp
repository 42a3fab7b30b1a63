#include "platform/linux/accessibility/AtspiAccessibility.h"

#include "platform/linux/accessibility/AtspiBus.h"
#include "platform/linux/accessibility/AtspiTree.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/desktop/EwmhWindowList.h"

#include <algorithm>

namespace velmor {

namespace {

AccessibilityResult found(AccessibilityValue value) {
  return {accessibilityError::success, std::move(value)};
}

AccessibilityResult textOrNone(const std::string& text) {
  return text.empty() ? AccessibilityResult{accessibilityError::noValue} : found(text);
}

} // namespace

AtspiElement::AtspiElement(std::shared_ptr<AtspiConversation> programConversation,
                           AtspiNodePtr ownNode)
    : conversation(std::move(programConversation)), node(std::move(ownNode)) {}

AccessibilityResult AtspiElement::attribute(const std::string& attributeName) {
  if (attributeName == "AXTitle") return textOrNone(node->name);
  if (attributeName == "AXValue") return value();
  if (attributeName == "AXPosition") return found(node->position);
  if (attributeName == "AXSize") return found(node->size);
  if (attributeName == "AXChildren") return children();
  return {accessibilityError::attributeUnsupported};
}

int AtspiElement::setAttribute(const std::string&, const AccessibilityValue&) {
  return accessibilityError::attributeUnsupported;
}

std::vector<AccessibilityElementPtr>
AtspiElement::wrap(const std::shared_ptr<AtspiConversation>& conversation,
                   const AtspiNodes& nodes) {
  std::vector<AccessibilityElementPtr> elements;
  for (const auto& node : nodes) {
    elements.push_back(std::make_shared<AtspiElement>(conversation, node));
  }
  return elements;
}

AccessibilityResult AtspiElement::children() {
  if (!node->childrenKnown && !AtspiTree(*conversation).readBelow(node)) {
    return {accessibilityError::cannotComplete};
  }
  return found(wrap(conversation, node->children));
}

AccessibilityResult AtspiElement::value() {
  if (!node->valueKnown && node->mayHoldValue) AtspiTree(*conversation).readValues({node});
  return textOrNone(node->value);
}

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

namespace {

/// Stands for a program of which nothing can be read.
class UnreadableElement : public AccessibilityElement {
public:
  explicit UnreadableElement(int errorCode) : error(errorCode) {}
  AccessibilityResult attribute(const std::string&) override { return {error}; }
  int setAttribute(const std::string&, const AccessibilityValue&) override { return error; }

private:
  int error;
};

} // namespace

AtspiAccessibility::AtspiAccessibility(const Environment& theEnvironment, std::stop_token quitToken)
    : environment(theEnvironment), quit(std::move(quitToken)) {}

AtspiAccessibility::~AtspiAccessibility() = default;

AccessibilityElementPtr AtspiAccessibility::application(std::int32_t processIdentifier) {
  const auto opened = openBus();
  if (!opened) return std::make_shared<UnreadableElement>(accessibilityError::apiDisabled);
  const auto name = opened->nameOf(processIdentifier);
  if (name) {
    return std::make_shared<AtspiApplicationElement>(
        std::make_shared<AtspiConversation>(opened, *name), processIdentifier);
  }
  // Where it is switched off, programs offer nothing.
  return std::make_shared<UnreadableElement>(opened->isSwitchedOn()
                                                 ? accessibilityError::cannotComplete
                                                 : accessibilityError::apiDisabled);
}

std::shared_ptr<AtspiBus> AtspiAccessibility::openBus() {
  const std::lock_guard lock(mutex);
  if (bus && bus->isOpen()) return bus;
  const auto address = sessionBusAddress(environment);
  bus = address ? AtspiBus::open(*address, quit) : nullptr;
  return bus;
}

} // namespace velmor
