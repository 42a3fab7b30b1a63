#pragma once

#include "model/AppConfig.h"
#include "platform/MainLoop.h"
#include "ui/CompactDragView.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace velmor {

/// Turns minimising the main window into compact mode, a square that floats above everything, and
/// back. `start`, `stop`, `restore` and `savedBoundsIfCompact` may be called from any thread; all
/// else happens in the display lane.
class WindowModeManager : public std::enable_shared_from_this<WindowModeManager> {
public:
  static constexpr Size compactSize{82, 82};
  /// Told true on entering compact mode and false on leaving it.
  using CompactHandler = std::function<void(bool)>;

  WindowModeManager(MainLoop& mainLoop, const WindowServer& windowServer)
      : loop(mainLoop), server(windowServer) {}

  /// Watches the window from now on.
  void start(std::weak_ptr<VelmorWindow> watched, CompactHandler handler);
  /// Ends the watching and leaves the window as it is.
  void stop();
  /// Back to the full window, if it is compact.
  void restore();
  /// The full window's frame in whole points while it is compact; else nothing.
  [[nodiscard]] std::optional<WindowSettings> savedBoundsIfCompact() const;

private:
  void check();
  void enterCompact(VelmorWindow& entering);
  void reshape();
  void installDragOverlay(VelmorWindow& covered);
  void removeDragOverlay();
  void restoreNow();
  void rememberCompactOrigin(Point origin);
  [[nodiscard]] bool isCompact() const;
  [[nodiscard]] std::shared_ptr<VelmorWindow> watchedWindow() const;
  /// Runs a step in the display lane, if the manager still exists by then.
  void inDisplayLane(void (WindowModeManager::*step)());
  void startTimer();
  void endWatching();

  MainLoop& loop;
  const WindowServer& server;
  mutable std::mutex lock;
  // Guarded by the lock.
  Rect normalFrame{{0, 0}, {461, 592}};
  bool compact = false;
  /// Where the user left the square.
  std::optional<Point> compactOrigin;
  CompactHandler onCompact;
  std::weak_ptr<VelmorWindow> window;
  // Display lane only.
  std::unique_ptr<Timer> watchTimer;
  /// Runs between noticing that the window is minimised and reshaping it.
  std::unique_ptr<Timer> reshapeTimer;
  std::shared_ptr<CompactDragView> dragOverlay;
};

} // namespace velmor
