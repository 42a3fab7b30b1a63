#pragma once

#include "CamelotCode.h"
#include "Genre.h"
#include "Tempo.h"

#include <optional>

namespace velmor::tools {

/// A song held against the current one. What is not known of either is left out.
struct Comparison {
  std::optional<Tempo> tempo;
  std::optional<CamelotCode> currentKey;
  std::optional<CamelotCode> songKey;
  std::optional<Genre> currentGenre;
  std::optional<Genre> songGenre;
  std::optional<int> energyRise; ///< the song's energy less the current one's
  double distance = 0;           ///< 0 for a perfect successor to 1
};

} // namespace velmor::tools
