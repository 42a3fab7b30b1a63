#include "platform/linux/loop/EndDeadline.h"

#include <cstdlib>

namespace velmor {

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
