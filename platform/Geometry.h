#pragma once

#include <algorithm>

namespace velmor {

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

/// A rectangle by its corner with the smallest coordinates. On screens that is the bottom left one:
/// the origin is the bottom left of the main screen, in points.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] Point origin() const { return {x, y}; }
  [[nodiscard]] Size size() const { return {width, height}; }
  [[nodiscard]] double maxX() const { return x + width; }
  [[nodiscard]] double maxY() const { return y + height; }

  [[nodiscard]] bool contains(Point point) const {
    return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
  }

  /// What both cover; empty in a direction in which they do not meet.
  [[nodiscard]] Rect intersection(const Rect& other) const {
    const double left = std::max(x, other.x);
    const double bottom = std::max(y, other.y);
    return {left, bottom, std::max(0.0, std::min(maxX(), other.maxX()) - left),
            std::max(0.0, std::min(maxY(), other.maxY()) - bottom)};
  }

  bool operator==(const Rect&) const = default;
};

} // namespace velmor
