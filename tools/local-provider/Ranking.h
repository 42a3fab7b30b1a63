#pragma once

#include "PromptFacts.h"
#include "RankedSong.h"
#include "Song.h"

#include <vector>

namespace velmor::tools {

/// Puts the songs that mix best after the current one first, by tempo, key, genre and energy,
/// as far as each is known. Equal input gives equal output.
class Ranking {
public:
  /// As many songs as the facts ask for, or all there are. Never the current song in any of its
  /// versions, and no artist twice.
  static std::vector<RankedSong> of(const PromptFacts& facts, const std::vector<Song>& songs);
};

} // namespace velmor::tools
