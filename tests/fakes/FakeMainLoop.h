#pragma once

#include "platform/Clock.h"
#include "platform/MainLoop.h"

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmor {

/// A main loop in virtual time: nothing runs until the test lets it, and waiting takes no time.
/// It is its own clock. Workers and occupying work are plain calls, unless the test holds workers
/// back to have something happen while they run.
class FakeMainLoop : public MainLoop, public Clock {
public:
  void post(Lane lane, Work work) override;
  std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) override;
  std::unique_ptr<Timer> callEvery(Lane lane, Seconds interval, Work work) override;
  void startWorker(Work work, Work done) override;
  void occupyActor(const Work& work) override;

  TimePoint now() const override { return present; }

  /// Runs all that is due now, and what that posts in turn.
  void runPending();

  /// Lets time pass, running everything that falls due at its own moment.
  void advance(Seconds duration);

  void setNow(TimePoint moment) { present = moment; }

  /// From now on workers wait for `finishWorkers`.
  void holdWorkers() { workersHeld = true; }
  void finishWorkers();

private:
  struct Entry {
    TimePoint due;
    std::optional<Seconds> interval;
    std::shared_ptr<Work> work;
  };
  class FakeTimer;

  std::unique_ptr<Timer> schedule(Seconds delay, std::optional<Seconds> interval, Work work);
  bool runEarliestTimer(TimePoint until);

  TimePoint present = std::chrono::sys_days{std::chrono::year{2026} / 11 / 16};
  std::deque<Work> posted;
  std::vector<std::weak_ptr<Entry>> timers;
  bool workersHeld = false;
  std::deque<std::pair<Work, Work>> heldWorkers;
};

} // namespace velmor
