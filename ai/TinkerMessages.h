#pragma once

#include "model/Records.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

/// The Messages protocol that Tinker speaks: one request that forces a tool call, and its answer.
struct TinkerMessages {
  [[nodiscard]] static nlohmann::json body(const std::string& model, const std::string& prompt,
                                           std::int64_t recommendationCount);

  [[nodiscard]] static std::vector<std::pair<std::string, std::string>>
  headers(const std::string& apiKey);

  /// The tool call's input, or else the answer read out of the text blocks, validated.
  /// Throws VelmorError or DecodingError.
  [[nodiscard]] static Analysis parseTinkerResponse(std::string_view data,
                                                    std::int64_t recommendationCount);

  /// An analysis written as text, perhaps fenced as a code block. Throws VelmorError or
  /// DecodingError.
  [[nodiscard]] static Analysis parseAnalysisText(std::string_view text);
};

} // namespace velmor
