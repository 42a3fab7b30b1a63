#pragma once

#include "model/NowPlayingTrack.h"
#include "platform/Platform.h"

#include <filesystem>

namespace velmor {

/// Reads the play history of Serato. Stateless; any thread.
class SeratoDetector {
public:
  /// The newest track that is still open in the history. Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  /// The same from the database at this path.
  [[nodiscard]] static NowPlayingTrack read(const std::filesystem::path& path);
};

} // namespace velmor
