#pragma once

#include "platform/MainLoop.h"
#include "platform/linux/window/GtkScreens.h"

#include <memory>

struct _GtkWindow;

namespace velmor {

/// Where a toplevel window is. X11 carries out orders later, and a window manager may carry them
/// out otherwise, or be busy for a while. Until what was ordered has come, or half a second has
/// passed after which the window manager has answered otherwise, the frame is what was ordered.
/// Main thread.
///
/// The size is held by the window's size hints, so that nobody else changes it. They must not stand
/// in the way of an order, and may follow only when the order is carried out.
class GtkFrame {
public:
  GtkFrame(MainLoop& mainLoop, _GtkWindow* toplevel, const XRect& initial);

  [[nodiscard]] const XRect& current() const { return frame; }

  /// `hidden` says that the window is iconified, when the toolkit passes on no new size by itself.
  void order(const XRect& wanted, bool hidden);

  /// The window is on the screen again. Some window managers do not move what they hide.
  void shownAgain();

  /// The window manager has answered, or somebody has moved the window.
  void configured();

private:
  [[nodiscard]] XRect actual() const;
  void wait();
  void patienceEnds();
  void send(bool newSize, bool hidden);
  void setSizeHints(bool hold);
  void accept(const XRect& answered);

  MainLoop& loop;
  _GtkWindow* window;
  XRect frame;
  /// Runs while an order is under way; at its end the frame is what it is.
  std::unique_ptr<Timer> patience;
  /// The window manager has said something since the order.
  bool hasAnswered = false;
  int repeats = 0;
};

} // namespace velmor
