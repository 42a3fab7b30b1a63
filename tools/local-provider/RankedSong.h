#pragma once

#include "Song.h"

#include <string>

namespace velmor::tools {

/// A song at its place in a ranking.
struct RankedSong {
  Song song;
  int score = 0; ///< 0 to 100; falls, or stays, from rank to rank
  std::string explanation;
};

} // namespace velmor::tools
