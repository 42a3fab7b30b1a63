#pragma once

#include "platform/Geometry.h"
#include "platform/WindowServer.h"

#include <vector>

namespace velmor {

/// A rectangle as X11 counts: whole pixels, origin at the top left of all screens together, y
/// growing downwards.
struct XRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const XRect&) const = default;
};

/// The screens, and the one place where X11's coordinates and the seam's are converted.
namespace GtkScreens {

/// The main screen first.
[[nodiscard]] std::vector<Screen> all();

[[nodiscard]] XRect toX(const Rect& rect);
[[nodiscard]] Rect fromX(const XRect& rect);
/// While an event of the mouse is handled, the event's place: the mouse may have gone on since.
[[nodiscard]] Point mouseLocation();

} // namespace GtkScreens

} // namespace velmor
