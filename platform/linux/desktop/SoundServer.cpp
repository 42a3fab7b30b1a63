#include "platform/linux/desktop/SoundServer.h"

#include "platform/Environment.h"
#include "platform/ProcessLauncher.h"
#include "platform/linux/glib/GlibHandles.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>

#include <algorithm>
#include <sstream>
#include <string_view>

namespace velmor {

namespace {

constexpr std::string_view unixPrefix = "unix:";
constexpr std::string_view tcpPrefix = "tcp:";
constexpr unsigned patienceInSeconds = 2;
constexpr unsigned defaultPort = 4713;

/// Null when the address is none.
GlibPtr<GSocketConnectable> targetOf(std::string_view address) {
  if (address.starts_with(unixPrefix)) {
    const std::string path(address.substr(unixPrefix.size()));
    return GlibPtr<GSocketConnectable>(
        G_SOCKET_CONNECTABLE(g_unix_socket_address_new(path.c_str())));
  }
  if (address.starts_with(tcpPrefix)) address.remove_prefix(tcpPrefix.size());
  return GlibPtr<GSocketConnectable>(
      g_network_address_parse(std::string(address).c_str(), defaultPort, nullptr));
}

/// One output a line, with tabs between number, name and what else there is to know.
std::string listing(ProcessLauncher& processes) {
  try {
    return processes.run({"/usr/bin/pactl", {"list", "short", "sinks"}}).output;
  } catch (const LaunchError&) {
    return "";
  }
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
  const auto target = targetOf(address);
  if (!target) return false;
  const GlibPtr<GSocketClient> client(g_socket_client_new());
  g_socket_client_set_timeout(client.get(), patienceInSeconds);
  const GlibPtr<GSocketConnection> connection(
      g_socket_client_connect(client.get(), target.get(), nullptr, nullptr));
  return connection != nullptr;
}

std::vector<std::string> SoundServer::outputMonitors(ProcessLauncher& processes) {
  std::istringstream outputs(listing(processes));
  std::vector<std::string> monitors;
  std::string number;
  std::string name;
  std::string rest;
  // Going by the outputs leaves no way for a microphone to get into the list of sources.
  while (std::getline(outputs, number, '\t') && std::getline(outputs, name, '\t') &&
         std::getline(outputs, rest)) {
    monitors.push_back(name + ".monitor");
  }
  return monitors;
}

} // namespace velmor
