#include "platform/linux/loop/WorkerThreads.h"

#include <utility>

namespace velmor {

WorkerThreads::~WorkerThreads() {
  const std::lock_guard guard(lock);
  waiting.clear();
}

void WorkerThreads::start(Work work) {
  const std::lock_guard guard(lock);
  workers.remove_if([](const Worker& worker) { return worker.finished; });
  if (workers.size() >= most) {
    waiting.push_back(std::move(work));
    return;
  }
  Worker& worker = workers.emplace_back();
  try {
    worker.thread = std::jthread([this, &worker, run = std::move(work)]() mutable noexcept {
      while (run) {
        run();
        // What the work holds must be gone before the next, and before the thread has finished.
        run = nullptr;
        run = next(worker);
      }
    });
  } catch (...) {
    workers.pop_back();
    throw;
  }
}

WorkerThreads::Work WorkerThreads::next(Worker& worker) {
  const std::lock_guard guard(lock);
  worker.finished = waiting.empty();
  if (worker.finished) return nullptr;
  Work work = std::move(waiting.front());
  waiting.pop_front();
  return work;
}

} // namespace velmor
