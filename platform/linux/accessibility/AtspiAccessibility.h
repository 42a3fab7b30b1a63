#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/accessibility/AtspiBus.h"
#include "platform/linux/accessibility/AtspiTree.h"

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>

namespace velmor {

/// A window, or something in one. It was read when its window was first asked for its children.
class AtspiElement : public AccessibilityElement {
public:
  AtspiElement(std::shared_ptr<AtspiConversation> programConversation, AtspiNodePtr ownNode);

  AccessibilityResult attribute(const std::string& attributeName) override;
  int setAttribute(const std::string& attributeName, const AccessibilityValue& value) override;

  /// Elements for all these nodes.
  [[nodiscard]] static std::vector<AccessibilityElementPtr>
  wrap(const std::shared_ptr<AtspiConversation>& conversation, const AtspiNodes& nodes);

private:
  [[nodiscard]] AccessibilityResult children();
  [[nodiscard]] AccessibilityResult value();

  std::shared_ptr<AtspiConversation> conversation;
  AtspiNodePtr node;
};

/// A program that offers what its windows show. They are read when first asked for.
class AtspiApplicationElement : public AccessibilityElement {
public:
  AtspiApplicationElement(std::shared_ptr<AtspiConversation> programConversation,
                          std::int32_t processIdentifier);

  AccessibilityResult attribute(const std::string& attributeName) override;
  int setAttribute(const std::string& attributeName, const AccessibilityValue& value) override;

private:
  void readWindows();
  void nameUnnamedWindows();
  [[nodiscard]] AccessibilityResult windowList() const;
  [[nodiscard]] AccessibilityResult focusedWindow() const;

  std::shared_ptr<AtspiConversation> conversation;
  std::int32_t process;
  bool windowsRead = false;
  /// Nothing when the program does not answer.
  std::optional<AtspiNodes> windows;
};

class AtspiBus;
class Environment;

/// Accessibility over D-Bus alone: the usual library ends the process where there is no
/// accessibility bus, and waits long for hung programs.
///
/// Without a bus, or where it is switched off, every read gives `apiDisabled`. Reads end at once
/// when `quitToken` asks for it.
class AtspiAccessibility : public Accessibility {
public:
  AtspiAccessibility(const Environment& theEnvironment, std::stop_token quitToken);
  ~AtspiAccessibility() override;

  AccessibilityElementPtr application(std::int32_t processIdentifier) override;

private:
  [[nodiscard]] std::shared_ptr<AtspiBus> openBus();

  const Environment& environment;
  std::stop_token quit;
  std::mutex mutex;
  /// Kept open: programs keep their caches only for as long.
  std::shared_ptr<AtspiBus> bus;
};

} // namespace velmor
