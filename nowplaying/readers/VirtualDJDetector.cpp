#include "nowplaying/readers/VirtualDJDetector.h"

#include "nowplaying/readers/VirtualDJHistory.h"
#include "nowplaying/readers/VirtualDJNetworkControl.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"

namespace velmor {

NowPlayingTrack VirtualDJDetector::current(const Platform& platform) {
  if (ProcessUtils::processIDs(platform, VirtualDJNetworkControl::processName).empty()) {
    throw NowPlayingError::noActiveSession();
  }
  for (const auto port : VirtualDJNetworkControl::listeningPorts(platform)) {
    try {
      return VirtualDJNetworkControl::queryNetworkControl(platform, port);
    } catch (const std::exception&) {
      continue;
    }
  }
  return VirtualDJHistory::currentHistory(platform);
}

} // namespace velmor
