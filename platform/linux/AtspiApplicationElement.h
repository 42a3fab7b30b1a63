#pragma once

#include "platform/linux/AtspiConversation.h"
#include "platform/linux/AtspiNode.h"

#include <optional>

namespace velmor {

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

} // namespace velmor
