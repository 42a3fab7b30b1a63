#include "platform/linux/glib/GlibHandles.h"

#include <gio/gio.h>
#include <glib-object.h>

namespace velmor {

void GObjectRelease::operator()(void* object) const {
  g_object_unref(object);
}

void* takeReference(void* object) {
  return g_object_ref_sink(object);
}

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
