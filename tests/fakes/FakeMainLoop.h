#pragma once

#include "platform/Clock.h"
#include "platform/MainLoop.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmor {

/// A main loop in virtual time: nothing runs until the test lets it, and waiting takes no time.
/// It is its own clock. Workers are plain calls, unless the test holds them back to have something
/// happen while they run. Work that occupies the actor lane comes before all that waits.
class FakeMainLoop : public MainLoop, public Clock {
public:
  void post(Lane, Work work) override { posted.push_back(std::move(work)); }
  std::unique_ptr<Timer> callLater(Lane, Seconds delay, Work work) override {
    return schedule(delay, std::nullopt, std::move(work));
  }
  std::unique_ptr<Timer> callEvery(Lane, Seconds interval, Work work) override {
    return schedule(interval, interval, std::move(work));
  }
  void startWorker(Work work, Work done) override {
    workers.emplace_back(std::move(work), std::move(done));
    if (!workersHeld) runWorkers();
  }
  void occupyActor(Work work, Work done) override {
    posted.push_front([run = std::move(work), then = std::move(done)] {
      run();
      then();
    });
  }

  TimePoint now() const override { return present; }
  void setNow(TimePoint moment) { present = moment; }

  /// Runs all that is due now, and what that posts in turn.
  void runPending() { advance(Seconds{0}); }

  /// Lets time pass, running everything that falls due at its own moment.
  void advance(Seconds duration) {
    const auto end = after(duration);
    do {
      while (!posted.empty()) {
        const Work work = std::move(posted.front());
        posted.pop_front();
        work();
      }
    } while (runEarliestTimer(end));
    present = end;
  }

  /// From now on workers wait for `finishWorkers`.
  void holdWorkers() { workersHeld = true; }
  void finishWorkers() {
    runWorkers();
    runPending();
  }

private:
  struct Entry {
    TimePoint due;
    std::optional<Seconds> interval;
    std::shared_ptr<Work> work;
  };
  struct FakeTimer : Timer {
    explicit FakeTimer(std::shared_ptr<Entry> scheduled) : entry(std::move(scheduled)) {}
    std::shared_ptr<Entry> entry;
  };

  TimePoint after(Seconds delay) const {
    return present + std::chrono::duration_cast<TimePoint::duration>(delay);
  }

  std::unique_ptr<Timer> schedule(Seconds delay, std::optional<Seconds> interval, Work work) {
    auto entry = std::make_shared<Entry>(
        Entry{after(delay), interval, std::make_shared<Work>(std::move(work))});
    timers.emplace_back(entry);
    return std::make_unique<FakeTimer>(std::move(entry));
  }

  /// Runs the timer that is due first, if one is due by `until`, at its own moment.
  bool runEarliestTimer(TimePoint until) {
    std::erase_if(timers, [](const auto& timer) { return timer.expired(); });
    std::shared_ptr<Entry> earliest;
    for (const auto& timer : timers) {
      auto entry = timer.lock();
      if (entry->due <= until && (!earliest || entry->due < earliest->due)) earliest = entry;
    }
    if (!earliest) return false;
    present = std::max(present, earliest->due);
    earliest->due = earliest->interval ? after(*earliest->interval) : TimePoint::max();
    const auto work = earliest->work;
    earliest.reset();
    (*work)();
    return true;
  }

  void runWorkers() {
    for (auto& [work, done] : std::exchange(workers, {})) {
      work();
      post(Lane::Actor, std::move(done));
    }
  }

  TimePoint present = std::chrono::sys_days{std::chrono::year{2026} / 11 / 16};
  std::deque<Work> posted;
  std::vector<std::weak_ptr<Entry>> timers;
  bool workersHeld = false;
  std::deque<std::pair<Work, Work>> workers;
};

} // namespace velmor
