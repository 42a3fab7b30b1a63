#pragma once

#include <string>

namespace velmor::tools {

/// What a prompt says of the current track and of the list that is wanted.
struct PromptFacts {
  std::string song;
  std::string artist;
  std::string album;
  double bpm = 0;    ///< beats per minute; 0 when unknown
  std::string key;   ///< as given; "" when unknown
  std::string genre; ///< "" when unknown
  int energy = 0;    ///< 0 to 100; 0 when unknown
  std::string notes;
  std::string application; ///< display name of the player
  int tolerance = 0;       ///< beats per minute either way
  int count = 0;           ///< number of recommendations wanted
};

} // namespace velmor::tools
