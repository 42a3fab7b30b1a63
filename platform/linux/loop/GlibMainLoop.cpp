#include "platform/linux/loop/GlibMainLoop.h"

#include <glib.h>

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

namespace velmor {

struct WakeSource::Source {
  GSource base;
  WakeSource* owner;

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) noexcept {
    g_source_set_ready_time(source, -1);
    // A copy, since the call may destroy the owner.
    const auto ready = reinterpret_cast<Source*>(source)->owner->ready;
    ready();
    return G_SOURCE_CONTINUE;
  }

  static inline GSourceFuncs functions{nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};
};

WakeSource::WakeSource(std::function<void()> onReady)
    : ready(std::move(onReady)), source(g_source_new(&Source::functions, sizeof(Source))) {
  reinterpret_cast<Source*>(source)->owner = this;
  g_source_attach(source, nullptr);
}

WakeSource::~WakeSource() {
  g_source_destroy(source);
  g_source_unref(source);
}

void WakeSource::arm() {
  g_source_set_ready_time(source, 0);
}

void WakeSource::armAt(TimePoint moment) {
  using std::chrono::microseconds;
  // GLib's monotonic clock and the steady clock are the same clock of the system.
  const auto time = std::chrono::ceil<microseconds>(moment.time_since_epoch());
  g_source_set_ready_time(source, time.count());
}

void LaneQueue::post(MainLoop::Work work) {
  {
    const std::lock_guard guard(lock);
    waiting.push_back(std::move(work));
  }
  source.arm();
}

void LaneQueue::runOrPost(MainLoop::Work work) {
  {
    const std::lock_guard guard(lock);
    if (held || !waiting.empty()) {
      waiting.push_back(std::move(work));
      source.arm();
      return;
    }
  }
  work();
}

void LaneQueue::hold() {
  const std::lock_guard guard(lock);
  held = true;
}

void LaneQueue::release(MainLoop::Work first) {
  {
    const std::lock_guard guard(lock);
    held = false;
    waiting.push_front(std::move(first));
  }
  source.arm();
}

void LaneQueue::runNext() {
  MainLoop::Work work;
  {
    const std::lock_guard guard(lock);
    if (held || waiting.empty()) return;
    work = std::move(waiting.front());
    waiting.pop_front();
    if (!waiting.empty()) source.arm();
  }
  work();
}

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

namespace {

using std::chrono::steady_clock;

/// A moment that the clock can hold, however long the wait.
steady_clock::time_point after(steady_clock::time_point moment, Seconds delay) {
  constexpr Seconds longest = std::chrono::hours{24 * 365};
  const auto wait = std::clamp(delay, Seconds{0}, longest);
  return moment + std::chrono::duration_cast<steady_clock::duration>(wait);
}

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

LaneTimer::LaneTimer(LaneQueue& lane, Seconds delay, std::optional<Seconds> interval,
                     MainLoop::Work work)
    : queue(lane)
    , repetition(interval)
    , due(after(steady_clock::now(), delay))
    , call(std::make_shared<Call>(Call{.work = std::move(work)}))
    , source([this] { timeHasCome(); }) {
  source.armAt(due);
}

void LaneTimer::timeHasCome() {
  if (repetition) {
    // Steps from the planned moment keep the rhythm; those that were missed are dropped.
    due = std::max(after(due, *repetition), steady_clock::now());
    source.armAt(due);
  }
  if (call->isWaiting) return;
  call->isWaiting = true;
  // The last step: the work may destroy this timer.
  queue.runOrPost([weak = std::weak_ptr(call)] {
    const auto pending = weak.lock();
    if (!pending) return;
    pending->isWaiting = false;
    pending->work();
  });
}

} // namespace

void GlibMainLoop::post(Lane lane, Work work) {
  queue(lane).post(std::move(work));
}

std::unique_ptr<Timer> GlibMainLoop::callLater(Lane lane, Seconds delay, Work work) {
  return std::make_unique<LaneTimer>(queue(lane), delay, std::nullopt, std::move(work));
}

std::unique_ptr<Timer> GlibMainLoop::callEvery(Lane lane, Seconds interval, Work work) {
  return std::make_unique<LaneTimer>(queue(lane), interval, interval, std::move(work));
}

void GlibMainLoop::startWorker(Work work, Work done) {
  workers.start([this, run = std::move(work), whenDone = std::move(done)]() mutable {
    run();
    // Released here, since only the second half may belong to the main thread.
    run = nullptr;
    actor.post(std::move(whenDone));
  });
}

void GlibMainLoop::occupyActor(Work work, Work done) {
  actor.hold();
  try {
    occupant.start([this, run = std::move(work), whenDone = std::move(done)]() mutable {
      run();
      run = nullptr;
      actor.release(std::move(whenDone));
    });
  } catch (const std::system_error&) {
    actor.release([] {});
    throw;
  }
}

void GlibMainLoop::run() {
  while (!quitting)
    g_main_context_iteration(nullptr, TRUE);
}

} // namespace velmor
