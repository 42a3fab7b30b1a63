#pragma once

#include "platform/Window.h"
#include "platform/WindowServer.h"

#include <memory>
#include <vector>

namespace velmor {

/// The main window: a window that keeps itself above other applications, on every workspace.
/// Main thread only.
class VelmorWindow : public std::enable_shared_from_this<VelmorWindow> {
public:
  /// The application finds its window by it, too.
  static constexpr auto title = "Velmor";
  static constexpr int level = windowLevel::statusBar;
  static constexpr unsigned behavior =
      collectionBehavior::canJoinAllSpaces | collectionBehavior::ignoresCycle |
      collectionBehavior::fullScreenAuxiliary | collectionBehavior::fullScreenNone;
  static constexpr unsigned fullStyle = styleMask::titled | styleMask::closable |
                                        styleMask::miniaturizable | styleMask::fullSizeContentView;
  static constexpr WindowAppearance fullAppearance{
      .titlebarTransparent = true,
      .titleHidden = true,
      .opaque = false,
      .background = {25.0 / 255, 25.0 / 255, 31.0 / 255, 1},
      .movableByBackground = true,
  };

  /// The content's place in points, and bits of `styleMask`.
  VelmorWindow(WindowServer& windowServer, const Rect& contentRect, unsigned styleMask);

  /// The window as the system knows it, for all that takes no rule of this class.
  [[nodiscard]] Window& native() const { return *window; }

  /// Keeps the window above others also when screens, workspaces or the active application change.
  void enableAlwaysOnTop();
  /// Shows the close and the minimise button, and no other.
  void applyStandardChrome();
  /// Sets the level and the behaviour again: the system may have lost them.
  void setAlwaysOnTop();

  // Each sets the level and the behaviour first; what they do then, Window.h says.
  /// Applies the standard chrome too.
  void makeKeyAndOrderFront();
  void orderFront();
  void orderFrontRegardless();

private:
  void comeBackAbove();

  WindowServer& server;
  const std::shared_ptr<Window> window;
  std::vector<std::unique_ptr<DesktopObservation>> alwaysOnTopObservers;
};

} // namespace velmor
