#include "platform/linux/GtkRootWatch.h"

#include <gdk/gdk.h>

namespace velmor {

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

} // namespace velmor
