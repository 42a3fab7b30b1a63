#pragma once

#include "ModelRequest.h"

#include <nlohmann/json_fwd.hpp>

namespace velmor::tools {

/// A message object as the Messages protocol shapes it: a text first, then the use of the
/// result tool.
class MessagesAnswer {
public:
  static nlohmann::json of(const ModelRequest& request, const nlohmann::json& analysis);
};

} // namespace velmor::tools
