#pragma once

#include "platform/linux/glib/GlibHandles.h"

#include <functional>
#include <thread>

namespace velmor {

/// Hears the signals that ask the program to end, on a thread of its own: the main thread may be
/// busy for a long time. Signals that the program's starter has set to be ignored stay ignored.
class TerminationSignals {
public:
  /// `onSignal` is called on that thread each time, and no more once this is destroyed.
  explicit TerminationSignals(std::function<void()> onSignal);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
  void listen(int number);

  std::function<void()> heard;
  GlibPtr<_GMainContext> context;
  /// The last member: it uses the others.
  std::jthread thread;
};

} // namespace velmor
