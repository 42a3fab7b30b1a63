#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

#include <optional>
#include <string>

namespace velmor {

/// Reads the track that the operating system's media session announces. Stateless; any thread.
class MediaRemoteClient {
public:
  /// The announced track; nothing when nothing plays, artist or title are missing, or nobody
  /// answers. Asks up to three questions and waits up to two seconds for each. Never throws.
  [[nodiscard]] static std::optional<NowPlayingTrack> currentTrackWorker(const Platform& platform);

  /// The name under which the page shows the application with this bundle identifier.
  [[nodiscard]] static std::string mediaSourceName(const std::string& bundleIdentifier);
};

} // namespace velmor
