#pragma once

#include "platform/linux/glib/GlibHandles.h"

#include <gio/gio.h>

#include <string>

namespace velmor {

/// A session bus of the test's own, which knows no services to start.
class PrivateBus {
public:
  PrivateBus() : bus(g_test_dbus_new(G_TEST_DBUS_NONE)) {
    g_test_dbus_up(bus.get());
    address = g_test_dbus_get_bus_address(bus.get());
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() { g_test_dbus_stop(bus.get()); }

  std::string address;

private:
  GlibPtr<GTestDBus> bus;
};

} // namespace velmor
