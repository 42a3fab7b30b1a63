#pragma once

#include "Difference.h"

#include <nlohmann/json_fwd.hpp>

#include <string_view>
#include <variant>

namespace velmor::tools {

/// Reads a request body that must be one JSON object. A member that is written twice is
/// refused, which a plain reader would let pass.
class JsonBody {
public:
  static std::variant<nlohmann::json, Difference> read(std::string_view body);
};

} // namespace velmor::tools
