#include "platform/linux/SoundServer.h"

#include "platform/Environment.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>

#include <algorithm>
#include <string_view>

namespace velmor {

namespace {

constexpr std::string_view unixPrefix = "unix:";
constexpr std::string_view tcpPrefix = "tcp:";
constexpr unsigned patienceInSeconds = 2;
constexpr unsigned defaultPort = 4713;

bool connects(GSocketConnectable* target) {
  GSocketClient* const client = g_socket_client_new();
  g_socket_client_set_timeout(client, patienceInSeconds);
  GSocketConnection* const connection = g_socket_client_connect(client, target, nullptr, nullptr);
  g_object_unref(client);
  if (!connection) return false;
  g_object_unref(connection);
  return true;
}

GSocketConnectable* targetOf(std::string_view address) {
  if (address.starts_with(unixPrefix)) {
    const std::string path(address.substr(unixPrefix.size()));
    return G_SOCKET_CONNECTABLE(g_unix_socket_address_new(path.c_str()));
  }
  if (address.starts_with(tcpPrefix)) address.remove_prefix(tcpPrefix.size());
  return g_network_address_parse(std::string(address).c_str(), defaultPort, nullptr);
}

} // namespace

std::optional<std::string> SoundServer::address(const Environment& environment) {
  auto chosen = environment.variable("PULSE_SERVER").value_or("");
  // Several may be named, each for one machine alone: "{machine}unix:/path". The first is tried.
  chosen.resize(std::min(chosen.find(' '), chosen.size()));
  if (chosen.starts_with('{')) chosen.erase(0, std::min(chosen.find('}'), chosen.size() - 1) + 1);
  if (chosen.starts_with('/')) chosen.insert(0, unixPrefix);
  if (!chosen.empty()) return chosen;
  const auto runtimeFolder = environment.variable("XDG_RUNTIME_DIR").value_or("");
  if (runtimeFolder.empty()) return std::nullopt;
  return std::string(unixPrefix) + runtimeFolder + "/pulse/native";
}

bool SoundServer::answers(const std::string& address) {
  auto* const target = targetOf(address);
  if (!target) return false;
  const bool answered = connects(target);
  g_object_unref(target);
  return answered;
}

} // namespace velmor
