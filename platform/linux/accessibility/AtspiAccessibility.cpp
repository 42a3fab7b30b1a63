#include "platform/linux/accessibility/AtspiAccessibility.h"

#include "platform/linux/accessibility/AtspiBus.h"
#include "platform/linux/accessibility/AtspiNode.h"
#include "platform/linux/accessibility/AtspiTree.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/desktop/WindowProperties.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace velmor {

namespace {

using SharedConversation = std::shared_ptr<AtspiConversation>;

AccessibilityResult found(AccessibilityValue value) {
  return {accessibilityError::success, std::move(value)};
}

AccessibilityResult textOrNone(const std::string& text) {
  return text.empty() ? AccessibilityResult{accessibilityError::noValue} : found(text);
}

/// What all elements have in common: this system lets nobody set an attribute.
class ReadOnlyElement : public AccessibilityElement {
public:
  int setAttribute(const std::string&, const AccessibilityValue&) override {
    return accessibilityError::attributeUnsupported;
  }
};

/// A window, or something in one. It was read when its window was first asked for its children.
class AtspiElement final : public ReadOnlyElement {
public:
  AtspiElement(SharedConversation programConversation, AtspiNodePtr ownNode)
      : conversation(std::move(programConversation)), node(std::move(ownNode)) {}

  AccessibilityResult attribute(const std::string& name) override {
    if (name == "AXTitle") return textOrNone(node->name);
    if (name == "AXValue") return value();
    if (name == "AXPosition") return found(node->position);
    if (name == "AXSize") return found(node->size);
    if (name == "AXChildren") return children();
    return {accessibilityError::attributeUnsupported};
  }

  /// Elements for all these nodes.
  static AccessibilityResult all(const SharedConversation& conversation, const AtspiNodes& nodes) {
    std::vector<AccessibilityElementPtr> elements;
    for (const auto& node : nodes)
      elements.push_back(std::make_shared<AtspiElement>(conversation, node));
    return found(std::move(elements));
  }

private:
  AccessibilityResult value() {
    if (!node->valueKnown && node->mayHoldValue) AtspiTree(*conversation).readValues({node});
    return textOrNone(node->value);
  }

  AccessibilityResult children() {
    if (!node->childrenKnown && !AtspiTree(*conversation).readBelow(node)) {
      return {accessibilityError::cannotComplete};
    }
    return all(conversation, node->children);
  }

  SharedConversation conversation;
  AtspiNodePtr node;
};

/// A program that offers what its windows show. They are read when first asked for.
class AtspiApplicationElement final : public ReadOnlyElement {
public:
  AtspiApplicationElement(SharedConversation programConversation,
                          const WindowProperties& windowProperties, std::int32_t processIdentifier)
      : conversation(std::move(programConversation))
      , properties(windowProperties)
      , process(processIdentifier) {}

  AccessibilityResult attribute(const std::string& name) override {
    const bool asksForFocus = name == "AXFocusedWindow";
    if (!asksForFocus && name != "AXWindows" && name != "AXChildren") {
      return {accessibilityError::attributeUnsupported};
    }
    if (!std::exchange(windowsRead, true)) readWindows();
    if (!windows) return {accessibilityError::cannotComplete};
    return asksForFocus ? focusedWindow() : AtspiElement::all(conversation, *windows);
  }

private:
  void readWindows() {
    windows = AtspiTree(*conversation).windows();
    const bool someLackNames = windows && std::ranges::any_of(*windows, isUnnamed);
    if (someLackNames) nameUnnamedWindows();
  }

  /// A minimised window may lose its accessible name; the window manager still knows its title.
  void nameUnnamedWindows() {
    auto titles = properties.titles(process);
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

  static bool isUnnamed(const AtspiNodePtr& window) { return window->name.empty(); }

  [[nodiscard]] AccessibilityResult focusedWindow() const {
    const auto active =
        std::ranges::find_if(*windows, [](const auto& window) { return window->active; });
    if (active == windows->end()) return {accessibilityError::noValue};
    return found(AccessibilityElementPtr(std::make_shared<AtspiElement>(conversation, *active)));
  }

  SharedConversation conversation;
  const WindowProperties& properties;
  std::int32_t process;
  bool windowsRead = false;
  /// Nothing when the program does not answer.
  std::optional<AtspiNodes> windows;
};

/// Stands for a program of which nothing can be read.
class UnreadableElement final : public AccessibilityElement {
public:
  explicit UnreadableElement(int errorCode) : error(errorCode) {}
  AccessibilityResult attribute(const std::string&) override { return {error}; }
  int setAttribute(const std::string&, const AccessibilityValue&) override { return error; }

private:
  int error;
};

} // namespace

AtspiAccessibility::AtspiAccessibility(const Environment& theEnvironment,
                                       const WindowProperties& windowProperties,
                                       std::stop_token quitToken)
    : environment(theEnvironment), properties(windowProperties), quit(std::move(quitToken)) {}

AtspiAccessibility::~AtspiAccessibility() = default;

AccessibilityElementPtr AtspiAccessibility::application(std::int32_t processIdentifier) {
  const auto opened = openBus();
  if (!opened) return std::make_shared<UnreadableElement>(accessibilityError::apiDisabled);
  const auto name = opened->nameOf(processIdentifier);
  if (name) {
    return std::make_shared<AtspiApplicationElement>(
        std::make_shared<AtspiConversation>(opened, *name), properties, processIdentifier);
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
