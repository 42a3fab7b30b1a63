#include "platform/linux/GObjectPtr.h"

#include <glib-object.h>

namespace velmor {

void GObjectRelease::operator()(void* object) const {
  g_object_unref(object);
}

void* takeReference(void* object) {
  return g_object_ref_sink(object);
}

} // namespace velmor
