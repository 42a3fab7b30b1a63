#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace velmor {

/// Ends the process by force when it takes too long to end by itself: a thread that waits for a
/// dead disk cannot be told to stop. Destroying it in time calls that off. Main thread only.
class EndDeadline {
public:
  explicit EndDeadline(std::chrono::milliseconds timeToEnd) : time(timeToEnd) {}

  /// The exit status of a process that is ended so; a failure unless it is told.
  void setExitStatus(int exitStatus) { status = exitStatus; }

  /// The time runs from the first call on.
  void start();

private:
  std::chrono::milliseconds time;
  int status = 1;
  std::mutex lock;
  std::condition_variable_any wake;
  /// The last member: it uses the others.
  std::jthread thread;
};

} // namespace velmor
