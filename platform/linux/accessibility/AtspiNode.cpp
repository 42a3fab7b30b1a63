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

BusCall propertyCall(const AtspiReference& reference, const char* interface, const char* property) {
  return {reference.name,
          reference.path,
          "org.freedesktop.DBus.Properties",
          "Get",
          textTuple({interface, property}),
          "(v)"};
}

/// The value inside the variant that a property comes in.
VariantPtr propertyOf(const VariantPtr& answer) {
  return answer ? memberOf(memberOf(answer, 0), 0) : nullptr;
}

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
  const auto references = answer ? memberOf(answer, 0) : nullptr;
  for (std::size_t index = 0; index < sizeOf(references); ++index) {
    const auto reference = memberOf(references, index);
    auto node = std::make_shared<AtspiNode>();
    node->reference = {textOf(memberOf(reference, 0)), textOf(memberOf(reference, 1))};
    nodes.push_back(std::move(node));
  }
  return nodes;
}

std::array<BusCall, 3> detailCalls(const AtspiReference& reference) {
  return {propertyCall(reference, accessibleInterface, "Name"),
          BusCall{reference.name, reference.path, accessibleInterface, "GetState", nullptr, "(au)"},
          frameCall(reference)};
}

void setName(AtspiNode& node, const VariantPtr& answer) {
  if (answer) node.name = textOf(propertyOf(answer));
}

void setState(AtspiNode& node, const VariantPtr& answer) {
  if (answer) setStateWords(node, memberOf(answer, 0));
}

void setStateWords(AtspiNode& node, const VariantPtr& words) {
  if (sizeOf(words) == 0) return;
  const auto word = g_variant_get_uint32(memberOf(words, 0).get());
  node.active = (word >> activeState & 1) != 0;
  node.showing = (word >> showingState & 1) != 0;
}

BusCall frameCall(const AtspiReference& reference) {
  return {reference.name,
          reference.path,
          "org.a11y.atspi.Component",
          "GetExtents",
          takeVariant(g_variant_new("(u)", screenCoordinates)),
          "((iiii))"};
}

void setFrame(AtspiNode& node, const VariantPtr& answer) {
  if (!answer || !node.showing) return;
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  g_variant_get(answer.get(), "((iiii))", &x, &y, &width, &height);
  if (width <= 0 || height <= 0) return;
  node.position = {static_cast<double>(x), static_cast<double>(y)};
  node.size = {static_cast<double>(width), static_cast<double>(height)};
}

std::array<BusCall, 2> valueCalls(const AtspiReference& reference) {
  constexpr std::int32_t toItsEnd = -1;
  return {BusCall{reference.name, reference.path, "org.a11y.atspi.Text", "GetText",
                  takeVariant(g_variant_new("(ii)", 0, toItsEnd)), "(s)"},
          propertyCall(reference, valueInterface, "CurrentValue")};
}

void setValue(AtspiNode& node, const VariantPtr& textAnswer, const VariantPtr& numberAnswer) {
  if (textAnswer) node.value = textOf(memberOf(textAnswer, 0));
  if (!node.value.empty()) return;
  const auto number = propertyOf(numberAnswer);
  if (!number || !g_variant_is_of_type(number.get(), G_VARIANT_TYPE_DOUBLE)) return;
  const auto value = g_variant_get_double(number.get());
  if (std::isfinite(value)) node.value = numberText(value);
}

} // namespace velmor::atspi
