#include "platform/linux/window/GtkFullScreenCompanion.h"

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <utility>

namespace velmor {

namespace {

/// A window that is minimised loses the focus before it, and what goes along, is hidden.
constexpr Seconds longestParting{0.5};

/// The property that names the window to which another one belongs.
GdkAtom owner() {
  return gdk_atom_intern_static_string("WM_TRANSIENT_FOR");
}

WindowProperties::Window identifier(GdkWindow* surface) {
  return static_cast<WindowProperties::Window>(gdk_x11_window_get_xid(surface));
}

} // namespace

GtkFullScreenCompanion::~GtkFullScreenCompanion() {
  leave();
}

void GtkFullScreenCompanion::setEnabled(bool enabled) {
  if (enabled == desktop.has_value()) return;
  if (enabled) {
    desktop.emplace(gdk_get_default_root_window(), [this](std::string_view name) {
      if (name == "_NET_ACTIVE_WINDOW" || name == "_NET_CLIENT_LIST_STACKING") followSoon();
    });
    followSoon();
  } else {
    pending.reset();
    desktop.reset();
    watch(0);
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
  const auto focused = properties.active();
  // What the user does to the companion now is meant for it alone.
  if (focused == identifier(surface)) return leave();
  watch(focused);
  if (!other || !properties.isFullScreen(identifier(other->window())))
    partFromOther();
  else if (isCovered())
    join();
}

void GtkFullScreenCompanion::watch(WindowProperties::Window window) {
  if (other && identifier(other->window()) == window) return;
  partFromOther();
  other.reset();
  if (window == 0) return;
  auto* const display = gtk_widget_get_display(companion);
  const GlibPtr<GdkWindow> found(gdk_x11_window_foreign_new_for_display(display, window));
  if (!found) return;
  other.emplace(found.get(), [this](std::string_view name) {
    if (name == "_NET_WM_STATE") followSoon();
  });
}

bool GtkFullScreenCompanion::isCovered() const {
  return properties.isBelow(identifier(gtk_widget_get_window(companion)),
                            identifier(other->window()));
}

void GtkFullScreenCompanion::join() {
  auto* const surface = gtk_widget_get_window(companion);
  const auto window = gdk_x11_window_get_xid(other->window());
  // Some window managers lift dialogs alone above the window that they belong to, and only once
  // they are raised.
  gdk_window_set_type_hint(surface, GDK_WINDOW_TYPE_HINT_DIALOG);
  gdk_property_change(surface, owner(), gdk_atom_intern_static_string("WINDOW"), 32,
                      GDK_PROP_MODE_REPLACE, reinterpret_cast<const guchar*>(&window), 1);
  gdk_window_raise(surface);
  hasJoined = true;
}

void GtkFullScreenCompanion::partFromOther() {
  if (!hasJoined) return;
  leave();
  parting = loop.callLater(MainLoop::Lane::Display, longestParting, [this] { parting.reset(); });
}

void GtkFullScreenCompanion::leave() {
  if (!std::exchange(hasJoined, false)) return;
  auto* const surface = gtk_widget_get_window(companion);
  if (!surface) return;
  gdk_window_set_type_hint(surface, GDK_WINDOW_TYPE_HINT_NORMAL);
  gdk_property_delete(surface, owner());
  onParted();
  settling = loop.callLater(MainLoop::Lane::Display, longestParting, [this] {
    settling.reset();
    onParted();
  });
}

bool GtkFullScreenCompanion::wentAlong() {
  const bool did = hasJoined || parting;
  leave();
  parting.reset();
  return did;
}

} // namespace velmor
