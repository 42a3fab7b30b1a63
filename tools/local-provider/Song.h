#pragma once

#include <string>

namespace velmor::tools {

/// One song of the catalogue.
struct Song {
  std::string song;
  std::string artist;
  std::string album;
  double bpm = 0;    ///< beats per minute, 60 to 200
  std::string key;   ///< Camelot code, "1A" to "12B"
  std::string genre; ///< one of the names of `Genre`
  int energy = 0;    ///< 0 to 100
};

} // namespace velmor::tools
