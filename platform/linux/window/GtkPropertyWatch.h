#pragma once

#include "platform/linux/glib/GlibHandles.h"

#include <functional>
#include <string_view>

struct _GdkWindow;

namespace velmor {

/// Calls back whenever a property of a window changes, until it is destroyed. The window may be
/// another program's, and may be gone already; then nothing is ever called. Main thread.
class GtkPropertyWatch {
public:
  /// Gets the property's name. It must not destroy the watch.
  using Changed = std::function<void(std::string_view name)>;

  GtkPropertyWatch(_GdkWindow* watched, Changed changed);
  GtkPropertyWatch(const GtkPropertyWatch&) = delete;
  GtkPropertyWatch& operator=(const GtkPropertyWatch&) = delete;
  ~GtkPropertyWatch();

  [[nodiscard]] _GdkWindow* window() const { return surface.get(); }

private:
  struct Filter;

  GlibPtr<_GdkWindow> surface;
  Changed onChange;
};

} // namespace velmor
