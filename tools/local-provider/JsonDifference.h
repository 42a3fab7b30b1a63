#pragma once

#include "Difference.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>

namespace velmor::tools {

/// Compares member for member and type for type: 3000 is not 3000.0, an extra member is a
/// difference like a missing one. Member order does not count. At each level missing and
/// extra members come before those that differ.
class JsonDifference {
public:
  static std::optional<Difference> first(const nlohmann::json& wanted,
                                         const nlohmann::json& received);
};

} // namespace velmor::tools
