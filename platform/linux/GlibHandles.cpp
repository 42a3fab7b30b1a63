#include "platform/linux/GlibHandles.h"

#include <gio/gio.h>

namespace velmor {

void GlibRelease::operator()(_GCancellable* cancellable) const {
  g_object_unref(cancellable);
}

void GlibRelease::operator()(_GMainContext* context) const {
  g_main_context_unref(context);
}

void GlibRelease::operator()(_GVariant* value) const {
  g_variant_unref(value);
}

} // namespace velmor
