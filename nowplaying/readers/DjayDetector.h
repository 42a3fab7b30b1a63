#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmor {

/// Reads the play history in djay Pro's media library. Stateless; any thread.
class DjayDetector {
public:
  /// The newest track of the history, while it can still be playing. Throws
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  /// True while djay Pro is among the running applications or processes.
  [[nodiscard]] static bool isRunning(const Platform& platform);

  /// Where the library may be, in the order in which Velmor looks for it.
  [[nodiscard]] static std::vector<std::filesystem::path>
  mediaLibraryPaths(const Platform& platform);

  /// The tempo in BPM that djay measured for the track with this identifier (32 hexadecimal
  /// digits); 0 when it is unknown. Never throws for a missing or damaged library.
  [[nodiscard]] static double readBPM(const std::filesystem::path& path,
                                      const std::string& titleID);
};

} // namespace velmor
