#pragma once

#include "model/Records.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

/// OpenAI's Responses protocol: one request that forces a function call, and its answer.
struct OpenAIResponses {
  [[nodiscard]] static nlohmann::json body(const std::string& model, const std::string& prompt,
                                           std::int64_t recommendationCount);

  [[nodiscard]] static std::vector<std::pair<std::string, std::string>>
  headers(const std::string& apiKey);

  /// The first usable function call's arguments, validated. Throws VelmorError or DecodingError.
  [[nodiscard]] static Analysis parse(std::string_view bytes, std::int64_t recommendationCount);
};

} // namespace velmor
