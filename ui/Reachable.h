#pragma once

#include "platform/WindowServer.h"

#include <vector>

namespace velmor {

/// The frame itself when some screen shows enough of it to see and to grab it: 120 points both
/// ways, or half of a window that is smaller. Else the frame moved by the shortest way onto the
/// nearest screen; what is larger than the screen shows its top left. Without screens it stays.
[[nodiscard]] Rect reachable(const Rect& frame, const std::vector<Screen>& screens);

/// The frame, lowered until its top is seen when it is higher than the screen that shows most of
/// it: the window's buttons are at its top. What fits the screen, and without screens, it stays.
[[nodiscard]] Rect withTopInSight(Rect frame, const std::vector<Screen>& screens);

} // namespace velmor
