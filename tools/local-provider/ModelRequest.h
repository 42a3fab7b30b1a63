#pragma once

#include "PromptFacts.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {

/// A model request that was found right.
struct ModelRequest {
  nlohmann::json body;
  PromptFacts facts;
};

} // namespace velmor::tools
