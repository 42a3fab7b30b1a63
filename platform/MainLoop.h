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
/// Everything on it runs on the main thread, one piece of work at a time, in one of two lanes. The
/// actor lane is for whatever touches the controller: messages of the page and tasks. The display
/// lane is for the window: its timers and what the toolkit reports.
///
/// Work that blocks belongs to neither: it runs on a worker thread. `startWorker` leaves both lanes
/// free meanwhile. `occupyActor` keeps the actor lane from running anything until the work has
/// ended, while the display lane goes on, so that the window lives and nothing comes between the
/// work and what follows it.
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

  /// Runs blocking `work` on another thread, then `done` in the actor lane. Neither may throw.
  /// When the loop ends first, `done` is never called. Main thread only.
  virtual void startWorker(Work work, Work done) = 0;

  /// As `startWorker`, but the actor lane runs nothing until `work` has ended, and `done` is the
  /// first to run in it then. Call it in the actor lane, and at most once in a piece of its work.
  virtual void occupyActor(Work work, Work done) = 0;
};

} // namespace velmor
