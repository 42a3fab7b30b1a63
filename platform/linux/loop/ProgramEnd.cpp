#include "platform/linux/loop/ProgramEnd.h"

#include <glib-unix.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <utility>

namespace velmor {

namespace {

/// As nohup does it for HUP, and a shell for INT in what it runs in the background.
bool isIgnored(int number) {
  struct sigaction current {};
  return ::sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : heard(std::move(onSignal)) {
  const auto call = [](gpointer data) -> gboolean {
    static_cast<TerminationSignals*>(data)->heard();
    return G_SOURCE_CONTINUE;
  };
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    if (!isIgnored(number)) sources.push_back(g_unix_signal_add(number, call, this));
  }
}

TerminationSignals::~TerminationSignals() {
  for (const auto source : sources)
    g_source_remove(source);
}

OutputWatch::~OutputWatch() {
  if (source != 0) g_source_remove(source);
}

void OutputWatch::watch(std::function<void()> onClosed) {
  heard = std::move(onClosed);
  const auto call = [](int, GIOCondition, gpointer data) -> gboolean {
    auto& self = *static_cast<OutputWatch*>(data);
    self.source = 0;
    self.heard();
    return G_SOURCE_REMOVE;
  };
  const auto gone = static_cast<GIOCondition>(G_IO_ERR | G_IO_HUP | G_IO_NVAL);
  source = g_unix_fd_add(STDOUT_FILENO, gone, call, this);
}

void EndDeadline::start() {
  if (thread.joinable()) return;
  thread = std::jthread([this, end = time, exitStatus = status](const std::stop_token& calledOff) {
    std::unique_lock guard(lock);
    wake.wait_for(guard, calledOff, end, [] { return false; });
    // Nothing is cleaned up: what hangs may hold any lock.
    if (!calledOff.stop_requested()) std::_Exit(exitStatus);
  });
}

} // namespace velmor
