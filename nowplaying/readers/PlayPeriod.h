#pragma once

#include "platform/Clock.h"
#include "platform/MainLoop.h"

#include <chrono>

namespace velmor {

/// When a play history says that a track was started, and how long the track is.
struct PlayPeriod {
  /// Seconds as a floating-point number: no number found in a file can overflow it.
  using Moment = std::chrono::time_point<std::chrono::system_clock, Seconds>;

  Moment started;
  Seconds duration{0};

  /// True from the start of the track to its end, both included: it can be playing at that time.
  [[nodiscard]] bool contains(Clock::TimePoint now) const {
    return started <= now && now <= started + duration;
  }
};

} // namespace velmor
