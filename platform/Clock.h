#pragma once

#include <chrono>

namespace velmor {

/// The wall clock, replaceable so that rules about time are tested without waiting.
class Clock {
public:
  using TimePoint = std::chrono::system_clock::time_point;

  virtual ~Clock() = default;

  /// The present moment; it jumps when somebody sets the clock. Any thread.
  [[nodiscard]] virtual TimePoint now() const = 0;
};

} // namespace velmor
