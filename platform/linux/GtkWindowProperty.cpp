#include "platform/linux/GtkWindowProperty.h"

#include <gdk/gdkx.h>

#include <algorithm>

namespace velmor {

std::vector<unsigned long> GtkWindowProperty::list(_GdkWindow* window, const char* name) {
  constexpr long longest = 1 << 16;
  auto* const display = gdk_window_get_display(window);
  Atom type = None;
  int format = 0;
  unsigned long length = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  gdk_x11_display_error_trap_push(display);
  XGetWindowProperty(gdk_x11_display_get_xdisplay(display), gdk_x11_window_get_xid(window),
                     gdk_x11_get_xatom_by_name_for_display(display, name), 0, longest, False,
                     AnyPropertyType, &type, &format, &length, &rest, &data);
  gdk_x11_display_error_trap_pop_ignored(display);
  std::vector<unsigned long> values;
  // Xlib hands out numbers of 32 bits as longs.
  const auto* const first = reinterpret_cast<unsigned long*>(data);
  if (data && format == 32) values.assign(first, first + length);
  if (data) XFree(data);
  return values;
}

bool GtkWindowProperty::hasState(_GdkWindow* window, const char* name) {
  const auto state = gdk_x11_get_xatom_by_name_for_display(gdk_window_get_display(window), name);
  const auto states = list(window, "_NET_WM_STATE");
  return std::ranges::find(states, state) != states.end();
}

} // namespace velmor
