#pragma once

#include "platform/MainLoop.h"
#include "platform/linux/loop/WorkerThreads.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

struct _GSource;

namespace velmor {

/// A source of the default main context that calls `onReady` on the main thread once its time has
/// come. It begins disarmed, and is disarmed again before each call.
class WakeSource {
public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// `onReady` must not destroy the source. With `reentrant` it is also called from a loop that
  /// runs inside a call of it.
  WakeSource(std::function<void()> onReady, bool reentrant);
  WakeSource(const WakeSource&) = delete;
  WakeSource& operator=(const WakeSource&) = delete;
  ~WakeSource();

  /// Calls as soon as possible. Any thread.
  void arm();

  /// Calls at this moment. Any thread.
  void armAt(TimePoint moment);

private:
  struct Source;

  std::function<void()> ready;
  _GSource* source;
};

/// The work that waits for one lane of the main loop, run in the order of posting, one piece in
/// each turn of the loop.
class LaneQueue {
public:
  /// With `reentrant` the lane goes on inside loops that run within a piece of its work.
  explicit LaneQueue(bool reentrant);

  /// Any thread.
  void post(MainLoop::Work work);

  /// Between the two calls nothing of the lane runs; calls may be nested. Main thread only.
  void hold();
  void release();

private:
  void runNext();

  std::mutex lock;
  std::deque<MainLoop::Work> waiting;
  int holds = 0;
  WakeSource source;
};

/// A timer whose calls wait their turn in a lane, so that a held lane holds them back too. A call
/// that is still waiting when the next is due stands for both. May be destroyed inside its call.
class LaneTimer final : public Timer {
public:
  /// Calls once after `delay`, then every `interval` when there is one.
  LaneTimer(LaneQueue& lane, Seconds delay, std::optional<Seconds> interval, MainLoop::Work work);

private:
  struct Call {
    MainLoop::Work work;
    bool isWaiting = false;
  };

  void timeHasCome();

  LaneQueue& queue;
  std::optional<Seconds> repetition;
  WakeSource::TimePoint due;
  std::shared_ptr<Call> call;
  WakeSource source;
};

/// The main loop on GLib's default main context, which the toolkit's own events come through too.
class GlibMainLoop final : public MainLoop {
public:
  GlibMainLoop() = default;

  void post(Lane lane, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> callEvery(Lane lane, Seconds interval, Work work) override;
  void startWorker(Work work, Work done) override;
  void occupyActor(const Work& work) override;

  /// Whether `occupyActor` keeps the display lane going. Set once there is a window; events of
  /// the toolkit that concern the actor lane must then be posted to it.
  void serveDisplayWhileOccupied(bool serve) { servesDisplay = serve; }

  /// Serves both lanes until `quit` is called, or at once when it has been. Main thread only.
  void run();

  /// Ends `run` after the work at hand. Any thread.
  void quit();

private:
  LaneQueue& queue(Lane lane) { return lane == Lane::Display ? display : actor; }

  LaneQueue display{true};
  LaneQueue actor{false};
  std::atomic<bool> quitting = false;
  bool servesDisplay = false;
  /// Work that the display lane starts while other work occupies the actor lane waits for its turn.
  unsigned turnsGiven = 0;
  std::atomic<unsigned> turn = 0;
  /// The last member: threads that still run when the loop ends may post to the lanes.
  WorkerThreads workers;
};

} // namespace velmor
