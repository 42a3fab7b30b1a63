#include "platform/linux/WakeSource.h"

#include <glib.h>

namespace velmor {

struct WakeSource::Source {
  GSource base;
  WakeSource* owner;

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) noexcept {
    g_source_set_ready_time(source, -1);
    reinterpret_cast<Source*>(source)->owner->ready();
    return G_SOURCE_CONTINUE;
  }

  static inline GSourceFuncs functions{nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};
};

WakeSource::WakeSource(std::function<void()> onReady, bool reentrant)
    : ready(std::move(onReady)), source(g_source_new(&Source::functions, sizeof(Source))) {
  reinterpret_cast<Source*>(source)->owner = this;
  g_source_set_can_recurse(source, reentrant ? TRUE : FALSE);
  g_source_attach(source, nullptr);
}

WakeSource::~WakeSource() {
  g_source_destroy(source);
  g_source_unref(source);
}

void WakeSource::arm() {
  g_source_set_ready_time(source, 0);
}

void WakeSource::armAt(TimePoint moment) {
  using std::chrono::microseconds;
  // GLib's monotonic clock and the steady clock are the same clock of the system.
  const auto time = std::chrono::ceil<microseconds>(moment.time_since_epoch());
  g_source_set_ready_time(source, time.count());
}

} // namespace velmor
