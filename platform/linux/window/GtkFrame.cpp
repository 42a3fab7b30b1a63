#include "platform/linux/window/GtkFrame.h"

#include <gtk/gtk.h>

#include <utility>

namespace velmor {

namespace {

constexpr Seconds longestAnswer{0.5};
/// What did not come as ordered is ordered again so often: an order can overtake the hints about
/// the size, and some window managers put a new window a title bar's height aside.
constexpr int mostRepeats = 1;

} // namespace

GtkFrame::GtkFrame(MainLoop& mainLoop, _GtkWindow* toplevel, const XRect& initial)
    : loop(mainLoop), window(toplevel), frame(initial) {
  order(initial, false);
}

void GtkFrame::order(const XRect& wanted, bool hidden) {
  const bool sameSize = wanted.width == frame.width && wanted.height == frame.height;
  frame = wanted;
  repeats = 0;
  send(!sameSize, hidden);
}

void GtkFrame::send(bool newSize, bool hidden) {
  hasAnswered = false;
  wait();
  auto* const surface = gtk_widget_get_window(GTK_WIDGET(window));
  if (!surface || newSize) {
    setSizeHints(false);
    gtk_window_resize(window, frame.width, frame.height);
  }
  // Both at once: the toolkit would move the window now and resize it with its next frame.
  if (surface && (newSize || hidden))
    gdk_window_move_resize(surface, frame.x, frame.y, frame.width, frame.height);
  gtk_window_move(window, frame.x, frame.y);
}

void GtkFrame::wait() {
  patience = loop.callLater(MainLoop::Lane::Display, longestAnswer, [this] { patienceEnds(); });
}

void GtkFrame::patienceEnds() {
  const auto answer = actual();
  if (!hasAnswered && answer != frame)
    wait();
  else if (answer != frame && repeats++ < mostRepeats)
    send(answer.width != frame.width || answer.height != frame.height, false);
  else
    accept(answer);
}

void GtkFrame::shownAgain() {
  if (patience && actual() != frame) send(true, false);
}

void GtkFrame::configured() {
  hasAnswered = true;
  const auto answered = actual();
  if (!patience || answered == frame) accept(answered);
}

void GtkFrame::accept(const XRect& answered) {
  // The order may have waited in this call's own timer, which is done now.
  const auto finished = std::move(patience);
  frame = answered;
  if (finished) setSizeHints(true);
}

XRect GtkFrame::actual() const {
  auto* const surface = gtk_widget_get_window(GTK_WIDGET(window));
  if (!surface || gtk_widget_get_mapped(GTK_WIDGET(window)) == FALSE) return frame;
  XRect answer;
  gdk_window_get_origin(surface, &answer.x, &answer.y);
  answer.width = gdk_window_get_width(surface);
  answer.height = gdk_window_get_height(surface);
  return answer;
}

void GtkFrame::setSizeHints(bool hold) {
  GdkGeometry geometry{};
  geometry.min_width = hold ? frame.width : 1;
  geometry.min_height = hold ? frame.height : 1;
  geometry.max_width = hold ? frame.width : G_MAXSHORT;
  geometry.max_height = hold ? frame.height : G_MAXSHORT;
  const auto both = static_cast<GdkWindowHints>(GDK_HINT_MIN_SIZE | GDK_HINT_MAX_SIZE);
  gtk_window_set_geometry_hints(window, nullptr, &geometry, both);
  // The toolkit tells the window manager with its next frame, too late for an order that follows.
  auto* const surface = gtk_widget_get_window(GTK_WIDGET(window));
  if (surface && !hold) gdk_window_set_geometry_hints(surface, &geometry, both);
}

} // namespace velmor
