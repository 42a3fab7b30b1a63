#pragma once

#include "platform/WindowServer.h"

#include <vector>

namespace velmor {

/// The frame itself when some screen shows enough of it to see and to grab it: 120 points both
/// ways, or half of a window that is smaller. Else the frame moved by the shortest way onto the
/// nearest screen; what is larger than the screen shows its top left. Without screens it stays.
[[nodiscard]] Rect reachable(const Rect& frame, const std::vector<Screen>& screens);

} // namespace velmor
