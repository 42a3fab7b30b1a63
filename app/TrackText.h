#pragma once

#include "model/Records.h"

#include <string>

namespace velmor {

/// Tracks and rankings as the command line prints them, each ending in a line feed. What comes from
/// tracks and models is printed without control characters, which a terminal would obey.
struct TrackText {
  [[nodiscard]] static std::string readable(const NowPlayingTrack& track);
  [[nodiscard]] static std::string json(const NowPlayingTrack& track);
  [[nodiscard]] static std::string readable(const VisionResult& result);
};

} // namespace velmor
