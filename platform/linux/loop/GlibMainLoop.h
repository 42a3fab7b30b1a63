#pragma once

#include "platform/MainLoop.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

struct _GSource;

namespace velmor {

/// A source of the default main context that calls `onReady` on the main thread once its time has
/// come. It begins disarmed, and is disarmed again before each call.
class WakeSource {
public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// `onReady` may destroy the source.
  explicit WakeSource(std::function<void()> onReady);
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
/// each turn of the loop. Any thread may call the operations.
class LaneQueue {
public:
  void post(MainLoop::Work work);

  /// Runs the work at once when nothing waits before it: that spares a turn of the loop. On the
  /// main thread, between two pieces of work.
  void runOrPost(MainLoop::Work work);

  /// Runs nothing of the lane from now on.
  void hold();

  /// Ends the holding; `first` comes before all that waits.
  void release(MainLoop::Work first);

private:
  void runNext();

  std::mutex lock;
  std::deque<MainLoop::Work> waiting;
  bool held = false;
  WakeSource source{[this] { runNext(); }};
};

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

/// The main loop on GLib's default main context, which the toolkit's own events come through too.
/// What the toolkit reports for the actor lane has to be posted there.
class GlibMainLoop final : public MainLoop {
public:
  void post(Lane lane, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> callEvery(Lane lane, Seconds interval, Work work) override;
  void startWorker(Work work, Work done) override;
  void occupyActor(Work work, Work done) override;

  /// Serves both lanes until `quit` is called, or at once when it has been. Work that occupies the
  /// actor lane does not keep it from ending. Main thread only.
  void run();

  /// Ends `run` after the work at hand. Main thread only.
  void quit() { quitting = true; }

private:
  LaneQueue& queue(Lane lane) { return lane == Lane::Display ? display : actor; }

  LaneQueue display;
  LaneQueue actor;
  bool quitting = false;
  // The last members: threads that still run when the loop ends may post to the lanes.
  /// A few requests and look-ups; more at a time means that something hangs.
  WorkerThreads workers{8};
  /// Of its own, so that it never waits for the others.
  WorkerThreads occupant{1};
};

} // namespace velmor
