#include "platform/linux/desktop/WindowProperties.h"

#include "platform/linux/glib/GlibHandles.h"

#include <glib.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace velmor {

namespace {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); } // NOLINT: xcb replies are malloc'ed
};
using PropertyReply = std::unique_ptr<xcb_get_property_reply_t, FreeReply>;

/// A property that has been asked for. Every answer is taken exactly once: taking one twice would
/// wait for ever, and leaving one would keep it in memory.
using Request = xcb_get_property_cookie_t;

/// What is asked of each window.
struct WindowRequests {
  Request process;
  Request title;
  Request oldTitle;
  Request windowClass;
  Request state;
  Request type;
};

/// In UTF-8, from a property whose bytes are Latin-1 when its type is STRING. Other types are UTF-8
/// by their name, or an encoding that begins as Latin-1 and switches with escape sequences; what
/// has such sequences is not understood and reads as "".
std::string decoded(std::string_view bytes, xcb_atom_t type) {
  const bool isUtf8 = g_utf8_validate_len(bytes.data(), bytes.size(), nullptr) != FALSE;
  if (type != XCB_ATOM_STRING && isUtf8) return std::string(bytes);
  if (type != XCB_ATOM_STRING && bytes.find('\x1b') != std::string_view::npos) return "";
  return takeText(g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8", "ISO-8859-1",
                            nullptr, nullptr, nullptr));
}

bool holds(const std::vector<xcb_atom_t>& atoms, xcb_atom_t wanted) {
  return std::ranges::find(atoms, wanted) != atoms.end();
}

} // namespace

/// A connection to the X server, and the numbers that it gave to the properties' names.
class WindowProperties::Server {
public:
  /// Null when no server answers.
  static std::shared_ptr<Server> open() {
    auto opened = std::make_shared<Server>();
    opened->connection.reset(xcb_connect(nullptr, &opened->screen));
    auto* const connection = opened->connection.get();
    if (xcb_connection_has_error(connection) != 0) return nullptr;
    auto* const requests = xcb_ewmh_init_atoms(connection, &opened->ewmh);
    // On failure it clears away by itself what it had begun.
    if (xcb_ewmh_init_atoms_replies(&opened->ewmh, requests, nullptr) == 0) return nullptr;
    opened->wipe.reset(&opened->ewmh);
    return opened;
  }

  [[nodiscard]] bool isLost() const { return xcb_connection_has_error(connection.get()) != 0; }

  /// For the functions of the library, which take it as it is.
  [[nodiscard]] xcb_ewmh_connection_t* hints() { return &ewmh; }
  [[nodiscard]] int screenNumber() const { return screen; }

  [[nodiscard]] std::vector<std::uint32_t> numbers(Request request) {
    const auto answer = take(request);
    if (!answer || answer->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(answer.get()));
    return {first, first + answer->value_len};
  }

  /// Texts may stand one behind the other, each with a NUL at its end; `index` counts them from 0.
  [[nodiscard]] std::string text(Request request, int index = 0) {
    const auto answer = take(request);
    if (!answer || answer->format != 8) return "";
    std::string_view rest(static_cast<const char*>(xcb_get_property_value(answer.get())),
                          answer->value_len);
    for (int skipped = 0; skipped < index; ++skipped) {
      const auto end = rest.find('\0');
      if (end == std::string_view::npos) return "";
      rest.remove_prefix(end + 1);
    }
    return decoded(rest.substr(0, rest.find('\0')), answer->type);
  }

  [[nodiscard]] WindowRequests ask(Window window) {
    return {.process = xcb_ewmh_get_wm_pid(&ewmh, window),
            .title = askForText(window, ewmh._NET_WM_NAME),
            .oldTitle = askForText(window, XCB_ATOM_WM_NAME),
            .windowClass = askForText(window, XCB_ATOM_WM_CLASS),
            .state = xcb_ewmh_get_wm_state(&ewmh, window),
            .type = xcb_ewmh_get_wm_window_type(&ewmh, window)};
  }

  [[nodiscard]] EwmhClient answer(const WindowRequests& requests) {
    EwmhClient client;
    const auto process = numbers(requests.process);
    if (!process.empty()) client.process = static_cast<std::int32_t>(process.front());
    client.title = text(requests.title);
    const auto oldTitle = text(requests.oldTitle);
    if (client.title.empty()) client.title = oldTitle;
    // The first text is the instance's name.
    client.windowClass = text(requests.windowClass, 1);
    client.hidden = holds(numbers(requests.state), ewmh._NET_WM_STATE_HIDDEN);
    const auto type = numbers(requests.type);
    client.belongsToDesktop =
        holds(type, ewmh._NET_WM_WINDOW_TYPE_DESKTOP) || holds(type, ewmh._NET_WM_WINDOW_TYPE_DOCK);
    return client;
  }

  struct Family {
    Window parent = 0;
    /// The lowest first.
    std::vector<Window> children;
  };

  [[nodiscard]] Family family(Window window) {
    const std::unique_ptr<xcb_query_tree_reply_t, FreeReply> answer(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
    if (!answer) return {};
    const auto* const first = xcb_query_tree_children(answer.get());
    return {answer->parent, {first, first + xcb_query_tree_children_length(answer.get())}};
  }

  [[nodiscard]] Window root() const { return ewmh.screens[screen]->root; }

  /// The frame that the window manager has put around the window, else the window itself.
  [[nodiscard]] Window outermost(Window window) {
    constexpr int mostLevels = 16;
    for (int level = 0; level < mostLevels; ++level) {
      const auto parent = family(window).parent;
      if (parent == 0 || parent == root()) break;
      window = parent;
    }
    return window;
  }

private:
  struct Disconnect {
    void operator()(xcb_connection_t* opened) const { xcb_disconnect(opened); }
  };
  struct Wipe {
    void operator()(xcb_ewmh_connection_t* filled) const { xcb_ewmh_connection_wipe(filled); }
  };

  /// Of any type, since programs differ there. Longer texts are cut.
  [[nodiscard]] Request askForText(Window window, xcb_atom_t property) {
    constexpr std::uint32_t limitInFourBytes = 64 * 1024;
    return xcb_get_property(connection.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                            limitInFourBytes);
  }

  [[nodiscard]] PropertyReply take(Request request) {
    // A window that has gone answers with an error, which the library drops here.
    return PropertyReply(xcb_get_property_reply(connection.get(), request, nullptr));
  }

  int screen = 0;
  std::unique_ptr<xcb_connection_t, Disconnect> connection;
  xcb_ewmh_connection_t ewmh{};
  std::unique_ptr<xcb_ewmh_connection_t, Wipe> wipe;
};

WindowProperties::WindowProperties() = default;

WindowProperties::~WindowProperties() = default;

std::shared_ptr<WindowProperties::Server> WindowProperties::connected() const {
  const std::lock_guard guard(lock);
  if (!last || last->isLost()) last = Server::open();
  return last;
}

std::vector<WindowProperties::Window> WindowProperties::clients() const {
  const auto server = connected();
  if (!server) return {};
  return server->numbers(xcb_ewmh_get_client_list(server->hints(), server->screenNumber()));
}

std::vector<WindowProperties::Window> WindowProperties::stack() const {
  const auto server = connected();
  if (!server) return {};
  return server->numbers(
      xcb_ewmh_get_client_list_stacking(server->hints(), server->screenNumber()));
}

bool WindowProperties::isBelow(Window window, Window other) const {
  const auto server = connected();
  if (!server) return false;
  const auto order = server->family(server->root()).children;
  const auto fromWindowUp = std::ranges::find(order, server->outermost(window));
  return std::find(fromWindowUp, order.end(), server->outermost(other)) != order.end();
}

WindowProperties::Window WindowProperties::active() const {
  const auto server = connected();
  if (!server) return 0;
  const auto windows =
      server->numbers(xcb_ewmh_get_active_window(server->hints(), server->screenNumber()));
  return windows.empty() ? 0 : windows.front();
}

std::string WindowProperties::windowManager() const {
  const auto server = connected();
  if (!server) return "";
  const auto windows =
      server->numbers(xcb_ewmh_get_supporting_wm_check(server->hints(), server->root()));
  if (windows.empty()) return "";
  return server->text(xcb_ewmh_get_wm_name(server->hints(), windows.front()));
}

bool WindowProperties::isFullScreen(Window window) const {
  const auto server = connected();
  if (!server) return false;
  const auto state = server->numbers(xcb_ewmh_get_wm_state(server->hints(), window));
  return holds(state, server->hints()->_NET_WM_STATE_FULLSCREEN);
}

bool WindowProperties::canBeMinimised(Window window) const {
  const auto server = connected();
  if (!server) return true;
  const auto actions = server->numbers(xcb_ewmh_get_wm_allowed_actions(server->hints(), window));
  return actions.empty() || holds(actions, server->hints()->_NET_WM_ACTION_MINIMIZE);
}

bool WindowProperties::isShowingDesktop() const {
  const auto server = connected();
  if (!server) return false;
  const auto showing =
      server->numbers(xcb_ewmh_get_showing_desktop(server->hints(), server->screenNumber()));
  return !showing.empty() && showing.front() != 0;
}

std::vector<EwmhClient> WindowProperties::describe(const std::vector<Window>& windows) const {
  const auto server = connected();
  if (!server) return {};
  // All requests go out before the first answer is awaited.
  std::vector<WindowRequests> requests;
  requests.reserve(windows.size());
  for (const auto window : windows)
    requests.push_back(server->ask(window));
  std::vector<EwmhClient> described;
  described.reserve(requests.size());
  for (const auto& request : requests)
    described.push_back(server->answer(request));
  return described;
}

std::vector<std::string> WindowProperties::titles(std::int32_t process) const {
  std::vector<std::string> found;
  for (auto& client : describe(clients())) {
    if (client.process == process) found.push_back(std::move(client.title));
  }
  return found;
}

} // namespace velmor
