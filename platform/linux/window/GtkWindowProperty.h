#pragma once

#include "platform/MainLoop.h"
#include "platform/WindowServer.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/glib/SignalConnections.h"

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct _GdkWindow;

namespace velmor {

/// Hears of the changes of a window's properties until it is destroyed. The window may be another
/// program's. Main thread.
class GtkPropertyWatch {
public:
  /// `changed` gets the property's name. It must not destroy the watch.
  using Heard = std::function<void(std::string_view name)>;

  GtkPropertyWatch(_GdkWindow* watched, Heard changed);
  GtkPropertyWatch(const GtkPropertyWatch&) = delete;
  GtkPropertyWatch& operator=(const GtkPropertyWatch&) = delete;
  ~GtkPropertyWatch();

  [[nodiscard]] _GdkWindow* window() const { return surface.get(); }

private:
  struct Filter;

  GObjectPtr<_GdkWindow> surface;
  Heard heard;
};

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

/// Properties of windows, also of other programs', as the X server holds them. Main thread.
class GtkWindowProperty {
public:
  /// The identifiers of windows, or of atoms, that the property lists; none when it is missing or
  /// the window has gone.
  [[nodiscard]] static std::vector<unsigned long> list(_GdkWindow* window, const char* name);

  [[nodiscard]] static bool hasState(_GdkWindow* window, const char* name);
};

} // namespace velmor
