#include "platform/linux/loop/TerminationSignals.h"

#include <glib-unix.h>

#include <csignal>

namespace velmor {

namespace {

/// As nohup does it for HUP, and a shell for INT in what it runs in the background.
bool isIgnored(int number) {
  struct sigaction current {};
  return ::sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : heard(std::move(onSignal)), context(g_main_context_new()) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    if (!isIgnored(number)) listen(number);
  }
  thread = std::jthread([served = context.get()](const std::stop_token& stop) {
    const std::stop_callback wake(stop, [served] { g_main_context_wakeup(served); });
    while (!stop.stop_requested())
      g_main_context_iteration(served, TRUE);
  });
}

void TerminationSignals::listen(int number) {
  const auto call = [](gpointer data) -> gboolean {
    static_cast<TerminationSignals*>(data)->heard();
    return G_SOURCE_CONTINUE;
  };
  const GlibPtr<GSource> source(g_unix_signal_source_new(number));
  g_source_set_callback(source.get(), call, this, nullptr);
  g_source_attach(source.get(), context.get());
}

} // namespace velmor
