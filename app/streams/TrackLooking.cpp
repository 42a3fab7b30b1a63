#include "app/streams/TrackLooking.h"

#include "nowplaying/readers/RekordboxDetector.h"
#include "nowplaying/shared/NowPlayingError.h"

namespace velmor {

TrackLook lookForTrack(NowPlayingDetector& detector, const Platform& platform) {
  try {
    return {.track = detector.current(), .deniedAccess = ""};
  } catch (const NowPlayingError& error) {
    const bool denied = error.errorCase() == NowPlayingError::Case::accessibilityDenied;
    if (!denied || !RekordboxDetector::isRunning(platform)) return {};
    return {.track = std::nullopt, .deniedAccess = error.errorDescription()};
  } catch (const std::exception&) {
    return {};
  }
}

} // namespace velmor
