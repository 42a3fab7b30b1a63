#pragma once

#include "Comparison.h"

#include <string>

namespace velmor::tools {

/// Says in one sentence why a song mixes after the current one.
class Explanation {
public:
  static std::string of(const Comparison& comparison);
};

} // namespace velmor::tools
