#include "platform/linux/AtspiElement.h"

#include "platform/linux/AtspiTree.h"

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

} // namespace velmor
