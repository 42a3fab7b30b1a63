#pragma once

#include "Protocol.h"
#include "ReceivedRequest.h"

#include <nlohmann/json.hpp>

#include <string>

namespace velmor::tests {

/// Requests as they must look, written out in full so that they share nothing with the check.
struct RightRequests {
  static constexpr const char* key = "local-demo-key";

  static std::string prompt(const std::string& tempoLine = "- BPM: 128.00",
                            const std::string& keyLine = "- Key: 8A",
                            const std::string& genreLine = "- Genre: House",
                            const std::string& count = "5");
  static nlohmann::json body(tools::Protocol protocol, const std::string& prompt,
                             const std::string& count = "5");
  static tools::ReceivedRequest request(tools::Protocol protocol, const std::string& body);
};

} // namespace velmor::tests
