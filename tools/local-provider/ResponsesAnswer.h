#pragma once

#include "ModelRequest.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>

namespace velmor::tools {

/// A response object as the Responses protocol shapes it: reasoning first, then the call of
/// the result tool.
class ResponsesAnswer {
public:
  /// `createdAt` is in seconds since 1970.
  static nlohmann::json of(const ModelRequest& request, const nlohmann::json& analysis,
                           int64_t createdAt);
};

} // namespace velmor::tools
