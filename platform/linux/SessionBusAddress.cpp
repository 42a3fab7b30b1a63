#include "platform/linux/SessionBusAddress.h"

#include "platform/Environment.h"

#include <gio/gio.h>

#include <filesystem>

namespace velmor {

std::optional<std::string> sessionBusAddress(const Environment& environment) {
  const auto address = environment.variable("DBUS_SESSION_BUS_ADDRESS").value_or("");
  if (!address.empty()) {
    const bool isAddress = g_dbus_is_supported_address(address.c_str(), nullptr) != FALSE;
    if (!isAddress || address.find("autolaunch:") != std::string::npos) return std::nullopt;
    return address;
  }
  const auto runtimeFolder = environment.variable("XDG_RUNTIME_DIR").value_or("");
  if (runtimeFolder.empty()) return std::nullopt;
  const auto socket = std::filesystem::path(runtimeFolder) / "bus";
  std::error_code ignored;
  if (!std::filesystem::is_socket(socket, ignored)) return std::nullopt;
  char* escaped = g_dbus_address_escape_value(socket.c_str());
  const auto result = std::string("unix:path=") + escaped;
  g_free(escaped);
  return result;
}

} // namespace velmor
