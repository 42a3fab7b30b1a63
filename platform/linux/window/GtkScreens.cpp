#include "platform/linux/window/GtkScreens.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace velmor {

namespace {

GdkMonitor* mainMonitor() {
  auto* const display = gdk_display_get_default();
  auto* const primary = gdk_display_get_primary_monitor(display);
  return primary ? primary : gdk_display_get_monitor(display, 0);
}

/// Where the seam's origin lies in X11's coordinates: the bottom left of the main screen.
struct Origin {
  int left = 0;
  int bottom = 0;

  static Origin current() {
    auto* const monitor = mainMonitor();
    if (!monitor) return {};
    GdkRectangle area;
    gdk_monitor_get_geometry(monitor, &area);
    return {area.x, area.y + area.height};
  }
};

Rect converted(const Origin& origin, const XRect& rect) {
  return {{static_cast<double>(rect.x - origin.left),
           static_cast<double>(origin.bottom - rect.y - rect.height)},
          {static_cast<double>(rect.width), static_cast<double>(rect.height)}};
}

Screen screen(GdkMonitor* monitor) {
  GdkRectangle whole;
  GdkRectangle usable;
  gdk_monitor_get_geometry(monitor, &whole);
  gdk_monitor_get_workarea(monitor, &usable);
  return {.frame = GtkScreens::fromX({whole.x, whole.y, whole.width, whole.height}),
          .visibleFrame = GtkScreens::fromX({usable.x, usable.y, usable.width, usable.height})};
}

} // namespace

std::vector<Screen> GtkScreens::all() {
  auto* const display = gdk_display_get_default();
  const int count = gdk_display_get_n_monitors(display);
  std::vector<GdkMonitor*> monitors;
  monitors.reserve(static_cast<std::size_t>(count));
  for (int number = 0; number < count; ++number)
    monitors.push_back(gdk_display_get_monitor(display, number));
  const auto isMain = [main = mainMonitor()](GdkMonitor* monitor) { return monitor == main; };
  std::stable_partition(monitors.begin(), monitors.end(), isMain);

  std::vector<Screen> screens;
  std::transform(monitors.begin(), monitors.end(), std::back_inserter(screens), screen);
  return screens;
}

XRect GtkScreens::toX(const Rect& rect) {
  const auto origin = Origin::current();
  const auto whole = [](double value) { return static_cast<int>(std::lround(value)); };
  const XRect result{origin.left + whole(rect.minX()), 0, whole(rect.width()),
                     whole(rect.height())};
  return {result.x, origin.bottom - whole(rect.minY()) - result.height, result.width,
          result.height};
}

Rect GtkScreens::fromX(const XRect& rect) {
  return converted(Origin::current(), rect);
}

Point GtkScreens::mouseLocation() {
  const std::unique_ptr<GdkEvent, decltype(&gdk_event_free)> handled(gtk_get_current_event(),
                                                                     gdk_event_free);
  double eventX = 0;
  double eventY = 0;
  if (handled && gdk_event_get_root_coords(handled.get(), &eventX, &eventY) != FALSE) {
    const auto whole = [](double value) { return static_cast<int>(std::floor(value)); };
    return fromX({whole(eventX), whole(eventY), 0, 0}).origin;
  }
  auto* const seat = gdk_display_get_default_seat(gdk_display_get_default());
  int x = 0;
  int y = 0;
  gdk_device_get_position(gdk_seat_get_pointer(seat), nullptr, &x, &y);
  return fromX({x, y, 0, 0}).origin;
}

} // namespace velmor
