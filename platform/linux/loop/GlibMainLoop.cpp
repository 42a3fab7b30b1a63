#include "platform/linux/loop/GlibMainLoop.h"

#include <glib.h>

#include <algorithm>

namespace velmor {

struct WakeSource::Source {
  GSource base;
  WakeSource* owner;

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) noexcept {
    g_source_set_ready_time(source, -1);
    reinterpret_cast<Source*>(source)->owner->ready();
    return G_SOURCE_CONTINUE;
  }

  static inline GSourceFuncs functions{nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};
};

WakeSource::WakeSource(std::function<void()> onReady, bool reentrant)
    : ready(std::move(onReady)), source(g_source_new(&Source::functions, sizeof(Source))) {
  reinterpret_cast<Source*>(source)->owner = this;
  g_source_set_can_recurse(source, reentrant ? TRUE : FALSE);
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

LaneQueue::LaneQueue(bool reentrant) : source([this] { runNext(); }, reentrant) {}

void LaneQueue::post(MainLoop::Work work) {
  {
    const std::lock_guard guard(lock);
    waiting.push_back(std::move(work));
  }
  source.arm();
}

void LaneQueue::hold() {
  ++holds;
}

void LaneQueue::release() {
  if (--holds == 0) source.arm();
}

void LaneQueue::runNext() {
  if (holds > 0) return;
  MainLoop::Work work;
  {
    const std::lock_guard guard(lock);
    if (waiting.empty()) return;
    work = std::move(waiting.front());
    waiting.pop_front();
    if (!waiting.empty()) source.arm();
  }
  work();
}

namespace {

using std::chrono::steady_clock;

/// A moment that the clock can hold, however long the wait.
steady_clock::time_point after(steady_clock::time_point moment, Seconds delay) {
  constexpr Seconds longest = std::chrono::hours{24 * 365};
  const auto wait = std::clamp(delay, Seconds{0}, longest);
  return moment + std::chrono::duration_cast<steady_clock::duration>(wait);
}

} // namespace

LaneTimer::LaneTimer(LaneQueue& lane, Seconds delay, std::optional<Seconds> interval,
                     MainLoop::Work work)
    : queue(lane)
    , repetition(interval)
    , due(after(steady_clock::now(), delay))
    , call(std::make_shared<Call>(Call{.work = std::move(work)}))
    , source([this] { timeHasCome(); }, true) {
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
  queue.post([weak = std::weak_ptr(call)] {
    const auto pending = weak.lock();
    if (!pending) return;
    pending->isWaiting = false;
    pending->work();
  });
}

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

void GlibMainLoop::occupyActor(const Work& work) {
  if (!servesDisplay) {
    work();
    return;
  }
  std::atomic<bool> finished = false;
  actor.hold();
  {
    const std::jthread worker([&, mine = turnsGiven++]() noexcept {
      for (auto now = turn.load(); now != mine; now = turn.load())
        turn.wait(now);
      work();
      turn = mine + 1;
      turn.notify_all();
      finished = true;
      g_main_context_wakeup(nullptr);
    });
    while (!finished)
      g_main_context_iteration(nullptr, TRUE);
  }
  actor.release();
}

void GlibMainLoop::run() {
  while (!quitting)
    g_main_context_iteration(nullptr, TRUE);
}

void GlibMainLoop::quit() {
  quitting = true;
  g_main_context_wakeup(nullptr);
}

} // namespace velmor
