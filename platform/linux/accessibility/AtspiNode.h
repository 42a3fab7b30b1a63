#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/bus/SessionBus.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace velmor {

/// The bus name and object path of something that a program shows.
struct AtspiReference {
  std::string name;
  std::string path;
  // NOLINTNEXTLINE(modernize-use-nullptr): Clang takes the comparison with zero for a pointer.
  auto operator<=>(const AtspiReference&) const = default;
};

/// What a program says of one thing in its windows.
struct AtspiNode {
  AtspiReference reference;
  std::string name;
  /// The text or number that it holds; read ahead for what has no name.
  std::string value;
  bool valueKnown = false;
  /// False where asking for a value is known to be in vain.
  bool mayHoldValue = true;
  /// Seen on screen; what is not has no frame.
  bool showing = false;
  /// The window that has the keyboard.
  bool active = false;
  Point position;
  Size size;
  std::vector<std::shared_ptr<AtspiNode>> children;
  bool childrenKnown = false;
};

using AtspiNodePtr = std::shared_ptr<AtspiNode>;
using AtspiNodes = std::vector<AtspiNodePtr>;

} // namespace velmor

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
