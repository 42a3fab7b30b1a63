#include "platform/linux/GtkRootWatch.h"

#include <gdk/gdkx.h>

namespace velmor {

/// What GDK passes an event of the root window through.
struct GtkRootWatch::Filter {
  static GdkFilterReturn passed(GdkXEvent* native, GdkEvent*, gpointer data) {
    const auto& event = *static_cast<XEvent*>(native);
    if (event.type != PropertyNotify) return GDK_FILTER_CONTINUE;
    auto& watch = *static_cast<GtkRootWatch*>(data);
    if (event.xproperty.atom == gdk_x11_get_xatom_by_name("_NET_ACTIVE_WINDOW"))
      watch.notify(DesktopNotification::ApplicationActivated);
    else if (event.xproperty.atom == gdk_x11_get_xatom_by_name("_NET_CURRENT_DESKTOP"))
      watch.notify(DesktopNotification::ActiveSpaceChanged);
    return GDK_FILTER_CONTINUE;
  }
};

GtkRootWatch::GtkRootWatch(MainLoop& mainLoop)
    : loop(mainLoop), root(gdk_get_default_root_window()) {
  const auto watched =
      static_cast<GdkEventMask>(gdk_window_get_events(root) | GDK_PROPERTY_CHANGE_MASK);
  gdk_window_set_events(root, watched);
  gdk_window_add_filter(root, Filter::passed, this);
  const auto changed = [](GdkScreen*, gpointer data) {
    static_cast<GtkRootWatch*>(data)->notify(DesktopNotification::ScreenParametersChanged);
  };
  auto* const screen = gdk_screen_get_default();
  signals.connect(screen, "monitors-changed", +changed, this);
  signals.connect(screen, "size-changed", +changed, this);
}

GtkRootWatch::~GtkRootWatch() {
  gdk_window_remove_filter(root, Filter::passed, this);
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

} // namespace velmor
