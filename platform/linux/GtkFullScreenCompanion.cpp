#include "platform/linux/GtkFullScreenCompanion.h"

#include "platform/linux/GtkWindowProperty.h"

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <algorithm>

namespace velmor {

namespace {

GdkAtom owner() {
  return gdk_atom_intern_static_string("WM_TRANSIENT_FOR");
}

void watchProperties(GdkWindow* window) {
  const auto watched =
      static_cast<GdkEventMask>(gdk_window_get_events(window) | GDK_PROPERTY_CHANGE_MASK);
  gdk_window_set_events(window, watched);
}

} // namespace

/// What GDK passes the events of the root window and of the watched window through.
struct GtkFullScreenCompanion::Filter {
  static GdkFilterReturn passed(GdkXEvent* native, GdkEvent*, gpointer data) {
    const auto& event = *static_cast<XEvent*>(native);
    if (event.type != PropertyNotify) return GDK_FILTER_CONTINUE;
    for (const auto* name : {"_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST_STACKING", "_NET_WM_STATE"}) {
      if (event.xproperty.atom != gdk_x11_get_xatom_by_name(name)) continue;
      static_cast<GtkFullScreenCompanion*>(data)->followSoon();
      break;
    }
    return GDK_FILTER_CONTINUE;
  }
};

void GtkFullScreenCompanion::setEnabled(bool enabled) {
  if (enabled == isEnabled) return;
  isEnabled = enabled;
  auto* const root = gdk_get_default_root_window();
  if (enabled) {
    watchProperties(root);
    gdk_window_add_filter(root, Filter::passed, this);
    followSoon();
  } else {
    pending.reset();
    gdk_window_remove_filter(root, Filter::passed, this);
    watch(None);
  }
}

/// A change of the focus comes with several others: one look for all of them.
void GtkFullScreenCompanion::followSoon() {
  if (pending) return;
  pending = loop.callLater(MainLoop::Lane::Display, Seconds{0}, [this] {
    pending.reset();
    follow();
  });
}

void GtkFullScreenCompanion::follow() {
  auto* const surface = gtk_widget_get_window(companion);
  if (!surface) return;
  const auto active = GtkWindowProperty::list(gdk_get_default_root_window(), "_NET_ACTIVE_WINDOW");
  const auto focused = active.empty() ? None : active.front();
  // The companion itself may be used and still belong to what it lies on.
  if (focused != gdk_x11_window_get_xid(surface)) watch(focused);
  if (!watched || !GtkWindowProperty::hasState(watched.get(), "_NET_WM_STATE_FULLSCREEN"))
    leave();
  else if (isCovered())
    join();
}

void GtkFullScreenCompanion::watch(unsigned long window) {
  if (watched && gdk_x11_window_get_xid(watched.get()) == window) return;
  leave();
  if (watched) gdk_window_remove_filter(watched.get(), Filter::passed, this);
  watched.reset();
  if (window == None) return;
  auto* const display = gtk_widget_get_display(companion);
  watched.reset(gdk_x11_window_foreign_new_for_display(display, window));
  if (!watched) return;
  gdk_x11_display_error_trap_push(display);
  watchProperties(watched.get());
  gdk_x11_display_error_trap_pop_ignored(display);
  gdk_window_add_filter(watched.get(), Filter::passed, this);
}

bool GtkFullScreenCompanion::isCovered() const {
  const auto stack =
      GtkWindowProperty::list(gdk_get_default_root_window(), "_NET_CLIENT_LIST_STACKING");
  const auto own = gdk_x11_window_get_xid(gtk_widget_get_window(companion));
  const auto above = std::ranges::find(stack, own);
  return std::find(above, stack.end(), gdk_x11_window_get_xid(watched.get())) != stack.end();
}

void GtkFullScreenCompanion::join() {
  const auto window = gdk_x11_window_get_xid(watched.get());
  gdk_property_change(gtk_widget_get_window(companion), owner(),
                      gdk_atom_intern_static_string("WINDOW"), 32, GDK_PROP_MODE_REPLACE,
                      reinterpret_cast<const guchar*>(&window), 1);
  hasJoined = true;
}

bool GtkFullScreenCompanion::leave() {
  if (!hasJoined) return false;
  hasJoined = false;
  if (auto* const surface = gtk_widget_get_window(companion)) gdk_property_delete(surface, owner());
  return true;
}

} // namespace velmor
