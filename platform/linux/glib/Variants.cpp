#include "platform/linux/glib/Variants.h"

#include <glib.h>

namespace velmor {

namespace {

bool isOfType(const VariantPtr& variant, const GVariantType* type) {
  return variant && g_variant_is_of_type(variant.get(), type) != FALSE;
}

/// Takes over a value that GLib has just made, which nobody owns yet.
VariantPtr taken(GVariant* made) {
  return VariantPtr(g_variant_take_ref(made));
}

} // namespace

std::size_t sizeOf(const VariantPtr& container) {
  const bool isContainer = container && g_variant_is_container(container.get()) != FALSE;
  return isContainer ? g_variant_n_children(container.get()) : 0;
}

VariantPtr memberOf(const VariantPtr& container, std::size_t index) {
  if (index >= sizeOf(container)) return nullptr;
  return VariantPtr(g_variant_get_child_value(container.get(), index));
}

std::vector<VariantPtr> membersOf(const VariantPtr& container) {
  std::vector<VariantPtr> members(sizeOf(container));
  for (std::size_t index = 0; index < members.size(); ++index)
    members[index] = memberOf(container, index);
  return members;
}

VariantPtr entryOf(const VariantPtr& dictionary, const char* key) {
  if (!isOfType(dictionary, G_VARIANT_TYPE_VARDICT)) return nullptr;
  return VariantPtr(g_variant_lookup_value(dictionary.get(), key, nullptr));
}

template <>
std::optional<bool> valueOf(const VariantPtr& variant) {
  if (!isOfType(variant, G_VARIANT_TYPE_BOOLEAN)) return std::nullopt;
  return g_variant_get_boolean(variant.get()) != FALSE;
}

template <>
std::optional<std::int32_t> valueOf(const VariantPtr& variant) {
  if (!isOfType(variant, G_VARIANT_TYPE_INT32)) return std::nullopt;
  return g_variant_get_int32(variant.get());
}

template <>
std::optional<std::uint32_t> valueOf(const VariantPtr& variant) {
  if (!isOfType(variant, G_VARIANT_TYPE_UINT32)) return std::nullopt;
  return g_variant_get_uint32(variant.get());
}

template <>
std::optional<double> valueOf(const VariantPtr& variant) {
  if (!isOfType(variant, G_VARIANT_TYPE_DOUBLE)) return std::nullopt;
  return g_variant_get_double(variant.get());
}

template <>
std::optional<std::string> valueOf(const VariantPtr& variant) {
  if (!isOfType(variant, G_VARIANT_TYPE_STRING)) return std::nullopt;
  return g_variant_get_string(variant.get(), nullptr);
}

template <>
std::optional<std::vector<std::string>> valueOf(const VariantPtr& variant) {
  if (!isOfType(variant, G_VARIANT_TYPE_STRING_ARRAY)) return std::nullopt;
  std::vector<std::string> texts;
  for (const auto& member : membersOf(variant))
    texts.push_back(textOf(member));
  return texts;
}

std::string textOf(const VariantPtr& variant) {
  const bool isText =
      isOfType(variant, G_VARIANT_TYPE_STRING) || isOfType(variant, G_VARIANT_TYPE_OBJECT_PATH);
  return isText ? g_variant_get_string(variant.get(), nullptr) : "";
}

VariantPtr variantOf(const std::string& text) {
  return taken(g_variant_new_string(text.c_str()));
}

VariantPtr variantOf(std::int32_t number) {
  return taken(g_variant_new_int32(number));
}

VariantPtr variantOf(std::uint32_t number) {
  return taken(g_variant_new_uint32(number));
}

VariantPtr variantOf(const std::vector<std::string>& texts) {
  std::vector<const char*> members;
  for (const auto& text : texts)
    members.push_back(text.c_str());
  return taken(g_variant_new_strv(members.data(), static_cast<gssize>(members.size())));
}

VariantPtr tupleOfVariants(const std::vector<VariantPtr>& members) {
  std::vector<GVariant*> values;
  for (const auto& member : members)
    values.push_back(member.get());
  return taken(g_variant_new_tuple(values.data(), values.size()));
}

} // namespace velmor
