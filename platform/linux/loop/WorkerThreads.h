#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace velmor {

/// Threads for blocking work, one a piece of work. Destroying it waits for all of them.
class WorkerThreads {
public:
  WorkerThreads() = default;
  WorkerThreads(const WorkerThreads&) = delete;
  WorkerThreads& operator=(const WorkerThreads&) = delete;
  ~WorkerThreads() = default;

  /// Runs `work`, which must not throw, on a thread of its own. Any thread.
  void start(std::function<void()> work);

private:
  struct Worker {
    std::atomic<bool> finished = false;
    std::jthread thread;
  };

  std::mutex lock;
  std::list<Worker> workers;
};

} // namespace velmor
