#pragma once

#include <algorithm>

namespace velmor {

/// Positions and sizes are in points: what the desktop counts in, whatever pixels a screen has.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

/// A rectangle by its corner with the smallest coordinates. Windows and screens have the origin at
/// the bottom left of the main screen; other applications' accessible elements at its top left.
struct Rect {
  Point origin;
  Size size;

  [[nodiscard]] double minX() const { return origin.x; }
  [[nodiscard]] double minY() const { return origin.y; }
  [[nodiscard]] double maxX() const { return origin.x + size.width; }
  [[nodiscard]] double maxY() const { return origin.y + size.height; }
  [[nodiscard]] double width() const { return size.width; }
  [[nodiscard]] double height() const { return size.height; }

  /// The edges with the smallest coordinates belong to it, the two others do not.
  [[nodiscard]] bool contains(Point point) const {
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
  }

  /// What both cover; without extent in a direction in which they do not meet.
  [[nodiscard]] Rect intersection(const Rect& other) const {
    const Point corner{std::max(minX(), other.minX()), std::max(minY(), other.minY())};
    return {corner,
            {std::max(0.0, std::min(maxX(), other.maxX()) - corner.x),
             std::max(0.0, std::min(maxY(), other.maxY()) - corner.y)}};
  }

  bool operator==(const Rect&) const = default;
};

} // namespace velmor
