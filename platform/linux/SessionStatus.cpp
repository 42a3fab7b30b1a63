#include "platform/linux/SessionStatus.h"

#include "platform/Environment.h"
#include "platform/linux/accessibility/AtspiBus.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/desktop/SoundServer.h"
#include "platform/linux/desktop/WindowProperties.h"

#include <xcb/xcb.h>

#include <iterator>
#include <utility>

namespace velmor {

namespace {

bool isDisplayOpen(const std::string& name) {
  auto* const connection = xcb_connect(name.c_str(), nullptr);
  const bool open = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return open;
}

} // namespace

SessionStatus::SessionStatus(const Environment& theEnvironment,
                             const WindowProperties& windowProperties, std::stop_token quitToken)
    : environment(theEnvironment), properties(windowProperties), quit(std::move(quitToken)) {}

std::vector<SystemService> SessionStatus::services() {
  std::vector<SystemService> found{display(), sessionBus(), accessibilityBus(), soundServer()};
  if (found.front().available) found.insert(std::next(found.begin()), windowManager());
  return found;
}

SystemService SessionStatus::display() const {
  constexpr auto advice = "For the window, start Velmor in an X11 session, or in a Wayland session "
                          "with XWayland. The commands work without a display.";
  const auto name = environment.variable("DISPLAY").value_or("");
  if (name.empty()) return {"Display", false, "DISPLAY is not set", advice};
  if (!isDisplayOpen(name)) return {"Display", false, name + " does not answer", advice};
  return {"Display", true, "X11 display " + name, ""};
}

/// The window works everywhere: it is never missing, but some cannot give it all that it asks for.
SystemService SessionStatus::windowManager() const {
  const auto name = properties.windowManager();
  auto detail = name.empty() ? "none: other windows may cover Velmor" : name;
  if (name == "JWM") detail += "; a full-screen program covers Velmor";
  return {"Window manager", true, detail, ""};
}

SystemService SessionStatus::sessionBus() const {
  constexpr auto advice = "Start Velmor in your desktop session, or with dbus-run-session: media "
                          "players announce their tracks on this bus.";
  const auto address = sessionBusAddress(environment);
  if (!address) return {"Session bus", false, "not running", advice};
  const auto end = std::chrono::steady_clock::now() + AtspiBus::patience;
  if (!BusWait(end, quit).connect(*address)) {
    return {"Session bus", false, *address + " does not answer", advice};
  }
  return {"Session bus", true, *address, ""};
}

SystemService SessionStatus::accessibilityBus() const {
  constexpr auto name = "Accessibility bus";
  constexpr auto use = " Velmor reads rekordbox's decks through it.";
  const auto address = sessionBusAddress(environment);
  const auto bus = address ? AtspiBus::open(*address, quit) : nullptr;
  if (!bus) {
    return {name, false, "not running", std::string("Install the package at-spi2-core.") + use};
  }
  if (!bus->isSwitchedOn()) {
    return {name, false, "switched off",
            std::string("Run \"gsettings set org.gnome.desktop.interface toolkit-accessibility "
                        "true\" and start the DJ program again.") +
                use};
  }
  return {name, true, "switched on", ""};
}

SystemService SessionStatus::soundServer() const {
  const auto server = SoundServer::address(environment);
  if (server && SoundServer::answers(*server)) return {"Sound server", true, *server, ""};
  return {"Sound server", false, server ? *server + " does not answer" : "not running",
          "Start PulseAudio, or PipeWire with pipewire-pulse: Velmor records its sample of the "
          "sound there. Suggestions work without it."};
}

} // namespace velmor
