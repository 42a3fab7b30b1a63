#pragma once

#include "platform/Clock.h"
#include "platform/MainLoop.h"

#include <chrono>

namespace velmor {

/// When a history says that a track was started, and how long it lasts.
struct PlayPeriod {
  /// Counted in a type that no number found in a file can overflow.
  using Moment = std::chrono::time_point<std::chrono::system_clock, Seconds>;

  Moment started;
  Seconds duration{0};

  /// True while the track can still be playing, both ends included.
  [[nodiscard]] bool contains(Clock::TimePoint now) const {
    return started <= now && now <= started + duration;
  }
};

} // namespace velmor
