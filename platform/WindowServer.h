#pragma once

#include "platform/Geometry.h"
#include "platform/MainLoop.h"

#include <memory>
#include <string>
#include <vector>

namespace velmor {

class Window;

/// A screen's place among the others, in points.
struct Screen {
  Rect frame;
  /// Without what the desktop keeps for itself, such as panels.
  Rect visibleFrame;
};

enum class DesktopNotification {
  ScreenParametersChanged,
  ActiveSpaceChanged,
  /// An application, this one or another, has become the active one.
  ApplicationActivated,
};

/// A registered observer. Destroying it ends the observation.
class DesktopObservation {
public:
  virtual ~DesktopObservation() = default;
};

/// Screens, this application's windows and the mouse. Main thread only.
class WindowServer {
public:
  virtual ~WindowServer() = default;

  /// A window that is not shown yet, with its content at this place.
  [[nodiscard]] virtual std::shared_ptr<Window> makeWindow(const Rect& content,
                                                           unsigned styleMask) = 0;
  /// The first of this application's windows with exactly this title; null when there is none.
  [[nodiscard]] virtual std::shared_ptr<Window> window(const std::string& title) const = 0;

  /// The main screen is the first one.
  [[nodiscard]] virtual std::vector<Screen> screens() const = 0;
  /// Where the mouse is now, in the coordinates of windows and screens.
  [[nodiscard]] virtual Point mouseLocation() const = 0;

  /// Calls `work` in the display lane each time.
  [[nodiscard]] virtual std::unique_ptr<DesktopObservation>
  observe(DesktopNotification notification, MainLoop::Work work) = 0;
};

} // namespace velmor
