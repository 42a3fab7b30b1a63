#pragma once

#include "platform/linux/AtspiConversation.h"
#include "platform/linux/AtspiNode.h"

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

} // namespace velmor
