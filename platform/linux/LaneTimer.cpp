#include "platform/linux/LaneTimer.h"

#include <algorithm>

namespace velmor {

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

} // namespace velmor
