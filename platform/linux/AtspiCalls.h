#pragma once

#include "platform/linux/AtspiNode.h"
#include "platform/linux/BusWait.h"

#include <array>

/// The calls that the accessibility protocol has for one element, and what their answers mean. An
/// answer may be null, and leaves the node as it is then.
namespace velmor::atspi {

[[nodiscard]] BusCall childrenCall(const AtspiReference& reference);
[[nodiscard]] AtspiNodes children(const VariantPtr& answer);

/// Asks for the name, the state and the frame of an element.
[[nodiscard]] std::array<BusCall, 3> detailCalls(const AtspiReference& reference);
void setName(AtspiNode& node, const VariantPtr& answer);
void setState(AtspiNode& node, const VariantPtr& answer);

[[nodiscard]] BusCall frameCall(const AtspiReference& reference);
/// Call it after `setState`: what is not seen has no frame.
void setFrame(AtspiNode& node, const VariantPtr& answer);

/// Asks for the text and the number that an element holds.
[[nodiscard]] std::array<BusCall, 2> valueCalls(const AtspiReference& reference);
void setValue(AtspiNode& node, const VariantPtr& textAnswer, const VariantPtr& numberAnswer);

/// Reads the two words of a state set.
void setStateWords(AtspiNode& node, const VariantPtr& words);

} // namespace velmor::atspi
