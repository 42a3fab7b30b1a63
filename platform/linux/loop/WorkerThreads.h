#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace velmor {

/// Threads for blocking work, one a piece of work, and never more than `most` at a time: what comes
/// beyond waits for its turn. Destroying it drops what waits, and waits for what runs.
class WorkerThreads {
public:
  using Work = std::function<void()>;

  explicit WorkerThreads(std::size_t mostThreads) : most(mostThreads) {}
  WorkerThreads(const WorkerThreads&) = delete;
  WorkerThreads& operator=(const WorkerThreads&) = delete;
  ~WorkerThreads();

  /// Runs `work`, which must not throw, on another thread. Throws std::system_error when there can
  /// be no thread. Any thread.
  void start(Work work);

private:
  struct Worker {
    bool finished = false;
    std::jthread thread;
  };

  /// What a worker does next; nothing, and it has finished, when there is no more.
  Work next(Worker& worker);

  const std::size_t most;
  std::mutex lock;
  std::deque<Work> waiting;
  std::list<Worker> workers;
};

} // namespace velmor
