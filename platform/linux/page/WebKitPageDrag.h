#pragma once

#include "platform/Geometry.h"
#include "platform/linux/glib/GlibHandles.h"

#include <functional>

struct _WebKitUserContentManager;
struct _WebKitWebView;

namespace velmor {

/// Moves the window by those places of the page that do not handle the mouse themselves. A script
/// tells which they are; it lives in a world of its own, where the page can neither see it nor
/// reach its handler.
class WebKitPageDrag {
public:
  struct WindowPlace {
    std::function<Rect()> frame;
    std::function<void(const Rect&)> setFrame;
  };

  /// Adds the script to the manager, whose views must not have loaded anything yet.
  WebKitPageDrag(_WebKitUserContentManager* manager, WindowPlace window);

  void attach(_WebKitWebView* shown);
  void setEnabled(bool enable) { enabled = enable; }

private:
  void pressed(Point mouse);
  /// True while the mouse moves the window.
  [[nodiscard]] bool moved(Point mouse);
  void released() { state = State::Idle; }
  void pressedOnBackground();

  enum class State { Idle, Pressed, OnBackground, Dragging };

  WindowPlace place;
  _WebKitWebView* view = nullptr;
  bool enabled = true;
  State state = State::Idle;
  /// In X11's coordinates.
  Point pressedAt;
  Point origin;
  SignalConnections signals;
};

} // namespace velmor
