#pragma once

#include "model/NowPlayingTrack.h"
#include "platform/Platform.h"

#include <filesystem>
#include <vector>

namespace velmor {

/// Reads the play history of Serato. Stateless; any thread.
class SeratoDetector {
public:
  /// The newest track that is still open in the history. Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  [[nodiscard]] static bool isRunning(const Platform& platform);

  /// Where the history may lie, in the order in which it is looked for.
  [[nodiscard]] static std::vector<std::filesystem::path> historyPaths(const Platform& platform);

  /// What `current` gives, from the database at this path.
  [[nodiscard]] static NowPlayingTrack read(const std::filesystem::path& path);
};

} // namespace velmor
