#pragma once

#include "crate/ranking/CratePoints.h"

#include <vector>

namespace velmor {

/// A suggestion from the crate. The track is the contents' own.
struct CrateSuggestion {
  const CrateTrack* track = nullptr;
  CratePoints points;
  // What had to be given up so that there are enough suggestions.
  bool isOutOfTolerance = false;
  bool isThirdOfArtist = false;
};

/// The tracks of the crate that follow the playing one best, the best first: as many as are
/// wanted, or all that the crate has. Never the playing track, and no song twice. There are at most
/// two of one artist, and one while there are enough others. When that is not enough, tracks out of
/// tolerance follow, then more of one artist. Any thread.
[[nodiscard]] std::vector<CrateSuggestion> rankCrate(const CrateContents& contents,
                                                     const CrateWish& wish);

} // namespace velmor
