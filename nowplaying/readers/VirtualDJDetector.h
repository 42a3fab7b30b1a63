#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

namespace velmor {

/// Asks VirtualDJ's Network Control for the track, and reads the play history when nobody answers.
/// Stateless; any thread.
class VirtualDJDetector {
public:
  /// The playing track. Takes up to a second for each port on which VirtualDJ listens. Throws
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);
};

} // namespace velmor
