#include "platform/linux/window/GtkWindowProperty.h"

#include <gdk/gdk.h>
#include <gdk/gdkx.h>

#include <algorithm>

namespace velmor {

/// What GDK passes the window's events through.
struct GtkPropertyWatch::Filter {
  static GdkFilterReturn passed(GdkXEvent* native, GdkEvent*, gpointer data) {
    const auto& event = *static_cast<XEvent*>(native);
    if (event.type == PropertyNotify) {
      static_cast<GtkPropertyWatch*>(data)->heard(gdk_x11_get_xatom_name(event.xproperty.atom));
    }
    return GDK_FILTER_CONTINUE;
  }
};

GtkPropertyWatch::GtkPropertyWatch(_GdkWindow* watched, Heard changed)
    : surface(owned(watched)), heard(std::move(changed)) {
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

GtkRootWatch::GtkRootWatch(MainLoop& mainLoop)
    : loop(mainLoop), properties(gdk_get_default_root_window(), [this](std::string_view name) {
      if (name == "_NET_ACTIVE_WINDOW")
        notify(DesktopNotification::ApplicationActivated);
      else if (name == "_NET_CURRENT_DESKTOP")
        notify(DesktopNotification::ActiveSpaceChanged);
    }) {
  const auto changed = [](GdkScreen*, gpointer data) {
    static_cast<GtkRootWatch*>(data)->notify(DesktopNotification::ScreenParametersChanged);
  };
  auto* const screen = gdk_screen_get_default();
  signals.connect(screen, "monitors-changed", +changed, this);
  signals.connect(screen, "size-changed", +changed, this);
}

std::unique_ptr<DesktopObservation> GtkRootWatch::observe(DesktopNotification notification,
                                                          MainLoop::Work work) {
  struct Observation : DesktopObservation {
    explicit Observation(std::shared_ptr<Observer> registered) : observer(std::move(registered)) {}
    std::shared_ptr<Observer> observer;
  };
  auto observer = std::make_shared<Observer>(Observer{notification, std::move(work)});
  observers.emplace_back(observer);
  return std::make_unique<Observation>(std::move(observer));
}

void GtkRootWatch::notify(DesktopNotification notification) {
  observers.remove_if([](const auto& observer) { return observer.expired(); });
  for (const auto& observer : observers) {
    if (const auto registered = observer.lock(); registered->notification != notification) continue;
    loop.post(MainLoop::Lane::Display, [observer] {
      if (const auto told = observer.lock()) told->work();
    });
  }
}

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
