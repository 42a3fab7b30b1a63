#pragma once

#include "model/AppConfig.h"
#include "platform/Geometry.h"

#include <cstdint>

namespace velmor {

/// A frame in points as the settings keep it: each value cut to a whole number, towards zero.
[[nodiscard]] inline WindowSettings frameSettings(const Rect& frame) {
  return {.x = static_cast<std::int64_t>(frame.minX()),
          .y = static_cast<std::int64_t>(frame.minY()),
          .width = static_cast<std::int64_t>(frame.width()),
          .height = static_cast<std::int64_t>(frame.height())};
}

} // namespace velmor
