#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

#include <optional>
#include <string>

namespace velmor {

/// Reads the operating system's own now-playing session.
class MediaRemoteClient {
public:
  /// The track that the session publishes; nothing when nothing plays or nobody answers. Waits up
  /// to two seconds for each of up to three queries. Never throws.
  [[nodiscard]] static std::optional<NowPlayingTrack> currentTrackWorker(const Platform& platform);

  /// What the page calls the application of that bundle identifier.
  [[nodiscard]] static std::string mediaSourceName(const std::string& bundleIdentifier);
};

} // namespace velmor
