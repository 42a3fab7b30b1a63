#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace velmor {

using Seconds = std::chrono::duration<double>;

/// A pending or repeating call. Destroying it cancels the call; it is never called afterwards.
class Timer {
public:
  virtual ~Timer() = default;
};

/// The main thread's event loop.
///
/// Work on it runs in one of two lanes. The display lane serves the window: its events, its timers
/// and painting. The actor lane serves everything that touches the controller: messages of the
/// page and tasks. `occupyActor` blocks the second without blocking the first.
class MainLoop {
public:
  enum class Lane { Display, Actor };
  using Work = std::function<void()>;

  virtual ~MainLoop() = default;

  /// Runs `work` on the main thread, after all that was posted to the lane before. Any thread.
  virtual void post(Lane lane, Work work) = 0;

  /// Calls `work` once, `delay` from now. Main thread only.
  [[nodiscard]] virtual std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) = 0;

  /// Calls `work` every `interval`, for the first time one interval from now. Main thread only.
  [[nodiscard]] virtual std::unique_ptr<Timer> callEvery(Lane lane, Seconds interval,
                                                         Work work) = 0;

  /// Runs `work` on another thread, then `done` in the actor lane. Neither may throw.
  virtual void startWorker(Work work, Work done) = 0;

  /// Runs blocking `work` to its end before returning and lets nothing else into the actor lane
  /// meanwhile. With a window on screen the work runs on another thread and the main thread goes
  /// on serving the display lane; without one this is a plain call. `work` must not throw and must
  /// not need the main thread. Main thread only.
  virtual void occupyActor(const Work& work) = 0;
};

} // namespace velmor
