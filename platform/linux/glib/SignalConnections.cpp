#include "platform/linux/glib/SignalConnections.h"

#include <glib-object.h>

#include <utility>

namespace velmor {

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
