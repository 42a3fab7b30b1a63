#include "platform/linux/accessibility/AtspiNode.h"

#include "platform/linux/glib/Variants.h"

#include <glib.h>

#include <charconv>
#include <cmath>

namespace velmor::atspi {

namespace {

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";
constexpr auto valueInterface = "org.a11y.atspi.Value";
constexpr unsigned activeState = 1;
constexpr unsigned showingState = 25;
constexpr std::uint32_t screenCoordinates = 0;

/// A number as text, with as many digits as it needs and the same in every locale.
std::string numberText(double number) {
  std::array<char, 32> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), result.ptr};
}

} // namespace

BusCall childrenCall(const AtspiReference& reference) {
  return {reference.name, reference.path, accessibleInterface, "GetChildren", nullptr, "(a(so))"};
}

AtspiNodes children(const VariantPtr& answer) {
  AtspiNodes nodes;
  for (const auto& reference : membersOf(memberOf(answer, 0))) {
    auto node = std::make_shared<AtspiNode>();
    node->reference = {textOf(memberOf(reference, 0)), textOf(memberOf(reference, 1))};
    nodes.push_back(std::move(node));
  }
  return nodes;
}

std::array<BusCall, 3> detailCalls(const AtspiReference& reference) {
  return {propertyCall(reference.name, reference.path, accessibleInterface, "Name"),
          BusCall{reference.name, reference.path, accessibleInterface, "GetState", nullptr, "(au)"},
          frameCall(reference)};
}

void setName(AtspiNode& node, const VariantPtr& answer) {
  if (answer) node.name = textOf(propertyIn(answer));
}

void setState(AtspiNode& node, const VariantPtr& answer) {
  setStateWords(node, memberOf(answer, 0));
}

void setStateWords(AtspiNode& node, const VariantPtr& words) {
  const auto word = valueOf<std::uint32_t>(memberOf(words, 0));
  if (!word) return;
  node.active = (*word >> activeState & 1) != 0;
  node.showing = (*word >> showingState & 1) != 0;
}

BusCall frameCall(const AtspiReference& reference) {
  return {reference.name,
          reference.path,
          "org.a11y.atspi.Component",
          "GetExtents",
          tupleOf(screenCoordinates),
          "((iiii))"};
}

void setFrame(AtspiNode& node, const VariantPtr& answer) {
  if (!node.showing) return;
  const auto frame = memberOf(answer, 0);
  const auto number = [&frame](std::size_t index) -> double {
    return valueOf<std::int32_t>(memberOf(frame, index)).value_or(0);
  };
  const Size size{number(2), number(3)};
  if (size.width <= 0 || size.height <= 0) return;
  node.position = {number(0), number(1)};
  node.size = size;
}

std::array<BusCall, 2> valueCalls(const AtspiReference& reference) {
  constexpr std::int32_t toItsEnd = -1;
  return {BusCall{reference.name, reference.path, "org.a11y.atspi.Text", "GetText",
                  tupleOf(0, toItsEnd), "(s)"},
          propertyCall(reference.name, reference.path, valueInterface, "CurrentValue")};
}

void setValue(AtspiNode& node, const VariantPtr& textAnswer, const VariantPtr& numberAnswer) {
  if (textAnswer) node.value = textOf(memberOf(textAnswer, 0));
  if (!node.value.empty()) return;
  const auto number = valueOf<double>(propertyIn(numberAnswer));
  if (number && std::isfinite(*number)) node.value = numberText(*number);
}

} // namespace velmor::atspi
