#pragma once

#include "platform/linux/LaneQueue.h"

#include <memory>
#include <optional>

namespace velmor {

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

} // namespace velmor
