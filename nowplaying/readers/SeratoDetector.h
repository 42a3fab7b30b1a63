#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

#include <filesystem>
#include <vector>

namespace velmor {

/// Reads Serato's play history. Stateless; any thread.
class SeratoDetector {
public:
  /// The newest track that the history lists as playing. Waits for a locked database a moment only.
  /// Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  /// True while a process of Serato DJ runs.
  [[nodiscard]] static bool isRunning(const Platform& platform);

  /// Where the history may be, in the order in which Velmor looks for it.
  [[nodiscard]] static std::vector<std::filesystem::path> historyPaths(const Platform& platform);
};

} // namespace velmor
