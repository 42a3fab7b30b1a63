#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

namespace velmor {

/// Finds VirtualDJ's track through its network control, else in its play history. Stateless; any
/// thread.
class VirtualDJDetector {
public:
  /// Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);
};

} // namespace velmor
