#include "platform/linux/glib/GlibHandles.h"

#include <glib-object.h>

#include <utility>

namespace velmor {

void GlibRelease<void>::operator()(void* object) const {
  g_object_unref(object);
}

void GlibRelease<char>::operator()(char* text) const {
  g_free(text);
}

void GlibRelease<char*>::operator()(char** texts) const {
  g_strfreev(texts);
}

void GlibRelease<GError>::operator()(GError* error) const {
  g_error_free(error);
}

void GlibRelease<GKeyFile>::operator()(GKeyFile* file) const {
  g_key_file_unref(file);
}

void GlibRelease<GMainContext>::operator()(GMainContext* context) const {
  g_main_context_unref(context);
}

void GlibRelease<GSource>::operator()(GSource* source) const {
  g_source_unref(source);
}

void GlibRelease<GVariant>::operator()(GVariant* value) const {
  g_variant_unref(value);
}

void* takeReference(void* object) {
  return g_object_ref_sink(object);
}

std::string takeText(char* made) {
  const GlibPtr<char> text(made);
  return text ? text.get() : "";
}

void SignalConnections::add(void* object, const char* signal, void (*handler)(), void* data,
                            bool after) {
  const auto flags = after ? G_CONNECT_AFTER : GConnectFlags{};
  const auto number = g_signal_connect_data(object, signal, handler, data, nullptr, flags);
  connections.push_back({g_object_ref(object), number});
}

void SignalConnections::disconnect() {
  for (const auto& [object, handler] : std::exchange(connections, {})) {
    // A destroyed widget has dropped its handlers already.
    if (g_signal_handler_is_connected(object, handler) != FALSE)
      g_signal_handler_disconnect(object, handler);
    g_object_unref(object);
  }
}

} // namespace velmor
