#pragma once

#include "nowplaying/NowPlayingDetector.h"
#include "platform/Platform.h"
#include "streams/TrackChanges.h"

namespace velmor {

/// One look for whoever watches: every failure is an answer, there is no track. Blocks as the
/// detector does. Never throws; any thread.
[[nodiscard]] TrackLook lookForTrack(NowPlayingDetector& detector, const Platform& platform);

} // namespace velmor
