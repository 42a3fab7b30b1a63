#pragma once

#include "platform/Accessibility.h"

#include <string>

namespace velmor {

/// One visible text of a window; the name is trimmed and never empty.
struct UIAText {
  std::string name;
  Rect rect;
};

} // namespace velmor
