#pragma once

#include "platform/MainLoop.h"
#include "platform/WindowServer.h"
#include "platform/linux/GtkPropertyWatch.h"
#include "platform/linux/SignalConnections.h"

#include <list>
#include <memory>

namespace velmor {

/// Tells observers what happens on the whole desktop.
class GtkRootWatch {
public:
  explicit GtkRootWatch(MainLoop& mainLoop);
  GtkRootWatch(const GtkRootWatch&) = delete;
  GtkRootWatch& operator=(const GtkRootWatch&) = delete;

  [[nodiscard]] std::unique_ptr<DesktopObservation> observe(DesktopNotification notification,
                                                            MainLoop::Work work);

private:
  struct Observer {
    DesktopNotification notification;
    MainLoop::Work work;
  };

  void notify(DesktopNotification notification);

  MainLoop& loop;
  std::list<std::weak_ptr<Observer>> observers;
  GtkPropertyWatch properties;
  SignalConnections signals;
};

} // namespace velmor
