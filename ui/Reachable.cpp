#include "ui/Reachable.h"

#include <algorithm>

namespace velmor {

namespace {

constexpr double enough = 120;

bool showsEnough(const Rect& area, const Rect& frame) {
  const auto overlap = area.intersection(frame);
  return overlap.width() >= std::min(enough, frame.width() / 2) &&
         overlap.height() >= std::min(enough, frame.height() / 2);
}

Rect movedInto(const Rect& area, Rect frame) {
  const double right = std::max(area.minX(), area.maxX() - frame.width());
  frame.origin.x = std::clamp(frame.minX(), area.minX(), right);
  const double top = area.maxY() - frame.height();
  // The top counts more than the bottom: that is where the buttons are.
  frame.origin.y = std::min(std::max(frame.minY(), area.minY()), top);
  return frame;
}

double squaredDistance(Point from, Point to) {
  return (from.x - to.x) * (from.x - to.x) + (from.y - to.y) * (from.y - to.y);
}

} // namespace

Rect reachable(const Rect& frame, const std::vector<Screen>& screens) {
  auto nearest = frame;
  for (const auto& screen : screens) {
    if (showsEnough(screen.visibleFrame, frame)) return frame;
    const auto moved = movedInto(screen.visibleFrame, frame);
    const bool isNearer =
        squaredDistance(moved.origin, frame.origin) < squaredDistance(nearest.origin, frame.origin);
    if (nearest == frame || isNearer) nearest = moved;
  }
  return nearest;
}

Rect withTopInSight(Rect frame, const std::vector<Screen>& screens) {
  const auto shown = [&](const Screen& screen) {
    const auto overlap = screen.visibleFrame.intersection(frame);
    return overlap.width() * overlap.height();
  };
  const auto screen = std::ranges::max_element(screens, {}, shown);
  if (screen == screens.end()) return frame;
  const auto& area = screen->visibleFrame;
  if (frame.height() > area.height())
    frame.origin.y = std::min(frame.minY(), area.maxY() - frame.height());
  return frame;
}

} // namespace velmor
