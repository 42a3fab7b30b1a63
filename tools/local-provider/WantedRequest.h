#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace velmor::tools {

/// The whole body that a right request has, given the parts of it that are free.
class WantedRequest {
public:
  static nlohmann::json responses(const std::string& model, const std::string& prompt, int count);
  static nlohmann::json messages(const std::string& model, const std::string& prompt, int count);
};

} // namespace velmor::tools
