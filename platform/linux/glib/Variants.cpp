#include "platform/linux/glib/Variants.h"

#include <glib.h>

#include <vector>

namespace velmor {

VariantPtr takeVariant(GVariant* made) {
  return VariantPtr(g_variant_take_ref(made));
}

VariantPtr textTuple(std::initializer_list<std::string> texts) {
  std::vector<GVariant*> members;
  for (const auto& text : texts)
    members.push_back(g_variant_new_string(text.c_str()));
  return takeVariant(g_variant_new_tuple(members.data(), members.size()));
}

VariantPtr memberOf(const VariantPtr& container, std::size_t index) {
  return VariantPtr(g_variant_get_child_value(container.get(), index));
}

std::size_t sizeOf(const VariantPtr& container) {
  return container ? g_variant_n_children(container.get()) : 0;
}

std::string textOf(const VariantPtr& value) {
  if (!value) return "";
  const bool isText = g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) ||
                      g_variant_is_of_type(value.get(), G_VARIANT_TYPE_OBJECT_PATH);
  return isText ? g_variant_get_string(value.get(), nullptr) : "";
}

} // namespace velmor
