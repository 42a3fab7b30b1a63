#pragma once

// For sources only: this brings GLib's headers along.

#include "platform/linux/DBusConnection.h"

#include <gio/gio.h>

namespace velmor {

/// Takes over a value that GLib handed out, floating or not.
inline DBusValue adoptValue(GVariant* value) {
  return {value ? g_variant_take_ref(value) : nullptr, [](GVariant* owned) {
            if (owned) g_variant_unref(owned);
          }};
}

/// The member of a tuple or array; its index must exist.
inline DBusValue memberOf(const DBusValue& container, std::size_t index) {
  return adoptValue(g_variant_get_child_value(container.get(), index));
}

/// The number of members of a tuple or array; 0 for no value.
inline std::size_t sizeOf(const DBusValue& container) {
  return container ? g_variant_n_children(container.get()) : 0;
}

/// The value as text; "" when it is none.
inline std::string textOf(const DBusValue& value) {
  if (!value) return "";
  const bool isText = g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) ||
                      g_variant_is_of_type(value.get(), G_VARIANT_TYPE_OBJECT_PATH);
  return isText ? g_variant_get_string(value.get(), nullptr) : "";
}

} // namespace velmor
