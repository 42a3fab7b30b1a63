#pragma once

#include "platform/linux/glib/GlibHandles.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// A value as it travels over D-Bus: a number, a text, or a tuple, array or dictionary of values.
///
/// Other programs choose what they send, so reading checks every type and never fails: what is
/// missing or of another type is null or nothing, and whatever is read from null is so too. So a
/// path may be followed to its end and looked at only there:
///
///     const auto isEnabled = valueOf<bool>(memberOf(memberOf(reply, 0), 0));
using VariantPtr = GlibPtr<_GVariant>;

/// The number of members of a tuple, an array or a dictionary.
[[nodiscard]] std::size_t sizeOf(const VariantPtr& container);

/// A member of a tuple or an array. A value that comes as D-Bus's own type "variant" is a container
/// with one member.
[[nodiscard]] VariantPtr memberOf(const VariantPtr& container, std::size_t index);

/// All members, in their order.
[[nodiscard]] std::vector<VariantPtr> membersOf(const VariantPtr& container);

/// The value under a key in a dictionary of properties (a{sv}).
[[nodiscard]] VariantPtr entryOf(const VariantPtr& dictionary, const char* key);

/// The value as bool, std::int32_t, std::uint32_t, double, std::string or a list of std::string,
/// when it is of exactly that type.
template <typename Value>
[[nodiscard]] std::optional<Value> valueOf(const VariantPtr& variant) = delete;
template <>
[[nodiscard]] std::optional<bool> valueOf(const VariantPtr& variant);
template <>
[[nodiscard]] std::optional<std::int32_t> valueOf(const VariantPtr& variant);
template <>
[[nodiscard]] std::optional<std::uint32_t> valueOf(const VariantPtr& variant);
template <>
[[nodiscard]] std::optional<double> valueOf(const VariantPtr& variant);
template <>
[[nodiscard]] std::optional<std::string> valueOf(const VariantPtr& variant);
template <>
[[nodiscard]] std::optional<std::vector<std::string>> valueOf(const VariantPtr& variant);

/// A text or an object path; "" when it is neither.
[[nodiscard]] std::string textOf(const VariantPtr& variant);

[[nodiscard]] VariantPtr variantOf(const std::string& text);
[[nodiscard]] VariantPtr variantOf(std::int32_t number);
[[nodiscard]] VariantPtr variantOf(std::uint32_t number);
[[nodiscard]] VariantPtr variantOf(const std::vector<std::string>& texts);

[[nodiscard]] VariantPtr tupleOfVariants(const std::vector<VariantPtr>& members);

/// A tuple of values, such as the arguments of a call.
template <typename... Values>
[[nodiscard]] VariantPtr tupleOf(const Values&... values) {
  std::vector<VariantPtr> members;
  members.reserve(sizeof...(values));
  (members.push_back(variantOf(values)), ...);
  return tupleOfVariants(members);
}

} // namespace velmor
