#pragma once

#include "model/Records.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

/// The Messages protocol, which Tinker speaks: a request that forces the model to call the result
/// tool, and the answer to it. Stateless; any thread.
struct TinkerMessages {
  /// The body of the request.
  [[nodiscard]] static nlohmann::json body(const std::string& model, const std::string& prompt,
                                           std::int64_t recommendationCount);

  /// Names and values of the request's headers; one of them holds the key.
  [[nodiscard]] static std::vector<std::pair<std::string, std::string>>
  headers(const std::string& apiKey);

  /// The input of the tool call, else the analysis that the model wrote as text, checked. Throws
  /// VelmorError with the provider's own message when it reports an error; DecodingError when the
  /// answer is not JSON or a key of the input is missing.
  [[nodiscard]] static Analysis parseTinkerResponse(std::string_view data,
                                                    std::int64_t recommendationCount);
};

} // namespace velmor
