#include "platform/linux/window/GtkPropertyWatch.h"

#include <gdk/gdk.h>
#include <gdk/gdkx.h>

#include <utility>

namespace velmor {

/// What GDK passes the window's events through.
struct GtkPropertyWatch::Filter {
  static GdkFilterReturn passed(GdkXEvent* native, GdkEvent*, gpointer data) {
    const auto& event = *static_cast<XEvent*>(native);
    if (event.type == PropertyNotify) {
      static_cast<GtkPropertyWatch*>(data)->onChange(gdk_x11_get_xatom_name(event.xproperty.atom));
    }
    return GDK_FILTER_CONTINUE;
  }
};

GtkPropertyWatch::GtkPropertyWatch(_GdkWindow* watched, Changed changed)
    : surface(owned(watched)), onChange(std::move(changed)) {
  auto* const display = gdk_window_get_display(watched);
  const auto events =
      static_cast<GdkEventMask>(gdk_window_get_events(watched) | GDK_PROPERTY_CHANGE_MASK);
  // Another program's window may have gone by now.
  gdk_x11_display_error_trap_push(display);
  gdk_window_set_events(watched, events);
  gdk_x11_display_error_trap_pop_ignored(display);
  gdk_window_add_filter(watched, Filter::passed, this);
}

GtkPropertyWatch::~GtkPropertyWatch() {
  gdk_window_remove_filter(surface.get(), Filter::passed, this);
}

} // namespace velmor
