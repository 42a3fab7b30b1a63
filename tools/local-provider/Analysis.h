#pragma once

#include "PromptFacts.h"
#include "RankedSong.h"

#include <nlohmann/json_fwd.hpp>

#include <vector>

namespace velmor::tools {

/// What the result tool is called with: the current track as the prompt gives it, and a ranking.
class Analysis {
public:
  static nlohmann::json of(const PromptFacts& facts, const std::vector<RankedSong>& ranking);
};

} // namespace velmor::tools
