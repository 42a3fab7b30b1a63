#pragma once

#include "platform/linux/glib/GlibHandles.h"

#include <cstddef>
#include <initializer_list>
#include <string>

namespace velmor {

using VariantPtr = GlibPtr<_GVariant>;

/// Takes over a value that GLib has just made.
[[nodiscard]] VariantPtr takeVariant(_GVariant* made);

/// A tuple of texts, as the arguments of a call.
[[nodiscard]] VariantPtr textTuple(std::initializer_list<std::string> texts);

/// The member of a tuple, array or variant; its index must exist.
[[nodiscard]] VariantPtr memberOf(const VariantPtr& container, std::size_t index);

/// The number of members of a tuple or array; 0 for null.
[[nodiscard]] std::size_t sizeOf(const VariantPtr& container);

/// The value of a text or an object path; "" for null and for any other value.
[[nodiscard]] std::string textOf(const VariantPtr& value);

} // namespace velmor
