#pragma once

#include "model/Records.h"
#include "platform/Platform.h"
#include "platform/RunningApplications.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// Reads the play history in djay Pro's media library. Stateless; any thread.
class DjayDetector {
public:
  /// The newest track of the history, if it can still be playing. Throws
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  [[nodiscard]] static bool isRunning(const Platform& platform);

  [[nodiscard]] static std::optional<RunningApplication> djayApplication(const Platform& platform);

  /// Where the library may lie, in the order in which it is looked for.
  [[nodiscard]] static std::vector<std::filesystem::path>
  mediaLibraryPaths(const Platform& platform);

  /// The analysed tempo of the media item; 0 when unknown.
  [[nodiscard]] static double readBPM(const std::filesystem::path& path,
                                      const std::string& titleID);
};

} // namespace velmor
