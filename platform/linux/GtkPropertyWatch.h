#pragma once

#include "platform/linux/GObjectPtr.h"

#include <functional>
#include <string_view>

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

} // namespace velmor
