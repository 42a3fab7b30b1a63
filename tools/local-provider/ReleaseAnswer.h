#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace velmor::tools {

/// What a version server says of the current release.
class ReleaseAnswer {
public:
  static nlohmann::json of(const std::string& version);
};

} // namespace velmor::tools
