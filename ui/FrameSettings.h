#pragma once

#include "model/AppConfig.h"
#include "platform/Geometry.h"

namespace velmor {

/// A frame as it is saved: each value truncated to a whole number.
[[nodiscard]] inline WindowSettings frameSettings(const Rect& frame) {
  return {.x = static_cast<std::int64_t>(frame.minX()),
          .y = static_cast<std::int64_t>(frame.minY()),
          .width = static_cast<std::int64_t>(frame.width()),
          .height = static_cast<std::int64_t>(frame.height())};
}

} // namespace velmor
