#pragma once

#include "platform/MainLoop.h"
#include "platform/WindowServer.h"
#include "platform/linux/SignalConnections.h"

#include <list>
#include <memory>

struct _GdkWindow;

namespace velmor {

/// Tells observers what happens on the whole desktop.
class GtkRootWatch {
public:
  explicit GtkRootWatch(MainLoop& mainLoop);
  GtkRootWatch(const GtkRootWatch&) = delete;
  GtkRootWatch& operator=(const GtkRootWatch&) = delete;
  ~GtkRootWatch();

  [[nodiscard]] std::unique_ptr<DesktopObservation> observe(DesktopNotification notification,
                                                            MainLoop::Work work);

private:
  struct Observer {
    DesktopNotification notification;
    MainLoop::Work work;
  };
  struct Filter;

  void notify(DesktopNotification notification);

  MainLoop& loop;
  _GdkWindow* root;
  std::list<std::weak_ptr<Observer>> observers;
  SignalConnections signals;
};

} // namespace velmor
