#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace velmor {

/// A top-level window that the window manager looks after.
struct EwmhClient {
  /// 0 when the window does not tell.
  std::int32_t process = 0;
  /// The title in UTF-8; "" when there is none.
  std::string title;
  /// The class of WM_CLASS; "" when there is none.
  std::string windowClass;
  /// Minimised, or hidden in another way. It keeps its title.
  bool hidden = false;
  /// A desktop background, a panel or the like.
  bool belongsToDesktop = false;
};

/// Reads the properties of windows, our own and other programs', from the X server, over a
/// connection of its own, which is made when it is first needed and again when it is lost. A
/// property that is missing or malformed reads as empty, and so does every property of a window
/// that has gone and of a server that cannot be reached. Any thread.
class WindowProperties {
public:
  /// The X server's identifier of a window; 0 is no window.
  using Window = std::uint32_t;

  /// For the server and screen that DISPLAY names.
  WindowProperties();
  ~WindowProperties();
  WindowProperties(const WindowProperties&) = delete;
  WindowProperties& operator=(const WindowProperties&) = delete;

  /// The top-level windows, oldest first.
  [[nodiscard]] std::vector<Window> clients() const;

  /// The top-level windows, the lowest first.
  [[nodiscard]] std::vector<Window> stack() const;

  /// Whether the server draws the other window above this one, whatever `stack` says: some window
  /// managers leave full-screen windows out of their order.
  [[nodiscard]] bool isBelow(Window window, Window other) const;

  /// The window that has the focus; 0 when none has.
  [[nodiscard]] Window active() const;

  /// The window manager's name, as it gives it; "" when there is none.
  [[nodiscard]] std::string windowManager() const;

  [[nodiscard]] bool isFullScreen(Window window) const;

  /// False when the window manager tells what it does with the window, and minimising is not in it.
  [[nodiscard]] bool canBeMinimised(Window window) const;

  /// Whether all windows make way for the desktop at the moment.
  [[nodiscard]] bool isShowingDesktop() const;

  /// What these windows tell about themselves, in one round trip for all of them.
  [[nodiscard]] std::vector<EwmhClient> describe(const std::vector<Window>& windows) const;

  /// The titles of a process's top-level windows, oldest first, minimised or not.
  [[nodiscard]] std::vector<std::string> titles(std::int32_t process) const;

private:
  class Server;

  /// Null when there is no server.
  [[nodiscard]] std::shared_ptr<Server> connected() const;

  mutable std::mutex lock;
  /// Null before the first use.
  mutable std::shared_ptr<Server> last;
};

} // namespace velmor
