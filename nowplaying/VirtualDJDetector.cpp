#include "nowplaying/VirtualDJDetector.h"

#include "nowplaying/NowPlayingError.h"
#include "nowplaying/ProcessUtils.h"
#include "nowplaying/VirtualDJHistory.h"
#include "nowplaying/VirtualDJNetworkControl.h"

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
