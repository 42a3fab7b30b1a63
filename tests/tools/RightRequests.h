#pragma once

#include "Protocol.h"
#include "ReceivedRequest.h"

#include <nlohmann/json.hpp>

#include <string>

namespace velmor::tests {

/// Requests as they must look. Those that Velmor itself sends meet the check in the live tests.
struct RightRequests {
  static constexpr const char* key = "local-demo-key";

  static std::string prompt(int count = 5);
  static nlohmann::json body(tools::Protocol protocol, const std::string& prompt, int count = 5);
  static tools::ReceivedRequest request(tools::Protocol protocol, const std::string& body);
};

} // namespace velmor::tests
