#include "tests/fakes/FakeMainLoop.h"

#include <algorithm>

namespace velmor {

class FakeMainLoop::FakeTimer : public Timer {
public:
  explicit FakeTimer(std::shared_ptr<Entry> scheduled) : entry(std::move(scheduled)) {}

private:
  std::shared_ptr<Entry> entry;
};

void FakeMainLoop::post(Lane, Work work) {
  posted.push_back(std::move(work));
}

std::unique_ptr<Timer> FakeMainLoop::callLater(Lane, Seconds delay, Work work) {
  return schedule(delay, std::nullopt, std::move(work));
}

std::unique_ptr<Timer> FakeMainLoop::callEvery(Lane, Seconds interval, Work work) {
  return schedule(interval, interval, std::move(work));
}

void FakeMainLoop::startWorker(Work work, Work done) {
  if (workersHeld) {
    heldWorkers.emplace_back(std::move(work), std::move(done));
    return;
  }
  work();
  post(Lane::Actor, std::move(done));
}

void FakeMainLoop::occupyActor(const Work& work) {
  work();
}

void FakeMainLoop::runPending() {
  advance(Seconds{0});
}

void FakeMainLoop::advance(Seconds duration) {
  const auto end = present + std::chrono::duration_cast<Clock::TimePoint::duration>(duration);
  do {
    while (!posted.empty()) {
      const Work work = std::move(posted.front());
      posted.pop_front();
      work();
    }
  } while (runEarliestTimer(end));
  present = end;
}

void FakeMainLoop::finishWorkers() {
  for (auto& [work, done] : std::exchange(heldWorkers, {})) {
    work();
    post(Lane::Actor, std::move(done));
  }
  runPending();
}

std::unique_ptr<Timer> FakeMainLoop::schedule(Seconds delay, std::optional<Seconds> interval,
                                              Work work) {
  const auto due = present + std::chrono::duration_cast<Clock::TimePoint::duration>(delay);
  auto entry =
      std::make_shared<Entry>(Entry{due, interval, std::make_shared<Work>(std::move(work))});
  timers.emplace_back(entry);
  return std::make_unique<FakeTimer>(std::move(entry));
}

/// Runs the timer that is due first, if one is due by `until`, at its own moment.
bool FakeMainLoop::runEarliestTimer(TimePoint until) {
  std::erase_if(timers, [](const auto& timer) { return timer.expired(); });
  std::shared_ptr<Entry> earliest;
  for (const auto& timer : timers) {
    auto entry = timer.lock();
    if (entry->due <= until && (!earliest || entry->due < earliest->due)) earliest = entry;
  }
  if (!earliest) return false;
  present = std::max(present, earliest->due);
  if (earliest->interval) {
    earliest->due += std::chrono::duration_cast<Clock::TimePoint::duration>(*earliest->interval);
  } else {
    earliest->due = TimePoint::max();
  }
  const auto work = earliest->work;
  earliest.reset();
  (*work)();
  return true;
}

} // namespace velmor
