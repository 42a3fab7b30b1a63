#include "platform/linux/loop/WorkerThreads.h"

namespace velmor {

void WorkerThreads::start(std::function<void()> work) {
  const std::lock_guard guard(lock);
  workers.remove_if([](const Worker& worker) { return worker.finished.load(); });
  Worker& worker = workers.emplace_back();
  worker.thread = std::jthread([&worker, run = std::move(work)]() mutable noexcept {
    run();
    // What the work holds must be gone before the thread counts as finished.
    run = nullptr;
    worker.finished = true;
  });
}

} // namespace velmor
