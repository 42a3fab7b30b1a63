#pragma once

#include "platform/Accessibility.h"

#include <string>

namespace velmor {

/// A frame in screen coordinates: origin at the top left of the main screen, y growing downwards.
struct Rect {
  Point origin;
  Size size;

  [[nodiscard]] double minX() const { return origin.x; }
  [[nodiscard]] double minY() const { return origin.y; }
  [[nodiscard]] double width() const { return size.width; }
  [[nodiscard]] double height() const { return size.height; }
  bool operator==(const Rect&) const = default;
};

/// One visible text of a window; the name is trimmed and never empty.
struct UIAText {
  std::string name;
  Rect rect;
};

} // namespace velmor
