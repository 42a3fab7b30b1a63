#pragma once

#include "platform/Clock.h"

namespace velmor {

/// The system's wall clock.
class SystemClock final : public Clock {
public:
  [[nodiscard]] TimePoint now() const override { return std::chrono::system_clock::now(); }
};

} // namespace velmor
