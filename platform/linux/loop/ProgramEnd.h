#pragma once

// How the program comes to its end: it is asked to by a signal, and made to when it takes too long.

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace velmor {

/// Hears the signals that ask the program to end: TERM, INT and HUP. Signals that the program's
/// starter has set to be ignored stay ignored. Main thread only.
class TerminationSignals {
public:
  /// The main loop calls `onSignal` each time, and no more once this is destroyed.
  explicit TerminationSignals(std::function<void()> onSignal);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();

private:
  std::function<void()> heard;
  std::vector<unsigned> sources;
};

/// Hears when nobody reads standard output any more. Main thread only.
class OutputWatch {
public:
  OutputWatch() = default;
  OutputWatch(const OutputWatch&) = delete;
  OutputWatch& operator=(const OutputWatch&) = delete;
  ~OutputWatch();

  /// The main loop calls `onClosed` once, and not after this is destroyed.
  void watch(std::function<void()> onClosed);

private:
  std::function<void()> heard;
  unsigned source = 0;
};

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
