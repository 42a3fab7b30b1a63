#pragma once

#include "model/AppConfig.h"
#include "platform/Geometry.h"
#include "platform/MainLoop.h"
#include "ui/VelmorWindow.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace velmor {

class OverlayView;

/// Compact mode: minimising the main window turns it into a square that floats above everything. A
/// click on the square brings the full window back to where it was; a drag moves the square, and
/// it comes up there the next time. Neither is left where no screen shows it: not when it comes up,
/// and not when the screens change.
///
/// `start`, `stop`, `restore`, `savedBoundsIfCompact` and `lastSeenBounds` may be called from any
/// thread; all else happens in the display lane. Frames are in points, as the window server counts
/// them.
class WindowModeManager : public std::enable_shared_from_this<WindowModeManager> {
public:
  static constexpr Size compactSize{82, 82};
  /// Told in the display lane: true on entering compact mode, just before the window changes, and
  /// false on leaving it, just after.
  using CompactHandler = std::function<void(bool)>;

  WindowModeManager(MainLoop& mainLoop, WindowServer& windowServer)
      : loop(mainLoop), server(windowServer) {}

  /// Watches the window from now on, in place of any other.
  void start(std::weak_ptr<VelmorWindow> watched, CompactHandler handler);
  /// Ends the watching and leaves the window and the mode as they are.
  void stop();
  /// Back to the full window, if it is compact.
  void restore();
  /// The full window's frame in whole points while it is compact; else nothing.
  [[nodiscard]] std::optional<WindowSettings> savedBoundsIfCompact() const;
  /// The full window's frame in whole points, as it was seen last, up to a tenth of a second ago;
  /// nothing before it has been seen. For when the window itself cannot be asked any more.
  [[nodiscard]] std::optional<WindowSettings> lastSeenBounds() const;

private:
  void startTimer();
  void watchScreens();
  void bringBackOnScreen();
  void endWatching();
  void check();
  void enterCompact(const Window& entering);
  void reshape();
  void installDragOverlay(const std::shared_ptr<VelmorWindow>& covered);
  void removeDragOverlay();
  void restoreNow();
  /// Runs a step in the display lane, if the manager still exists by then.
  void inDisplayLane(std::function<void()> step);

  MainLoop& loop;
  WindowServer& server;

  /// Guards `normalFrame`, `wasSeen` and `compact`: any thread may ask for them. The display lane
  /// alone writes them, so that it reads them without the lock.
  mutable std::mutex lock;
  /// The full window's last frame while it was shown.
  Rect normalFrame{{0, 0}, {461, 592}};
  bool wasSeen = false;
  bool compact = false;

  // No lock from here on: the display lane alone touches these, and it runs on the main thread.
  /// Where the user left the square.
  std::optional<Point> compactOrigin;
  std::weak_ptr<VelmorWindow> window;
  CompactHandler onCompact;
  std::unique_ptr<Timer> watchTimer;
  std::unique_ptr<DesktopObservation> screenObservation;
  /// Runs while the desktop arranges itself on changed screens.
  std::unique_ptr<Timer> screensSettle;
  /// Runs between noticing that the window is minimised and reshaping it.
  std::unique_ptr<Timer> reshapeTimer;
  std::shared_ptr<OverlayView> dragOverlay;
};

} // namespace velmor
