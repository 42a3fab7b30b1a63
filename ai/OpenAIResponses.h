#pragma once

#include "model/Records.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

/// OpenAI's Responses protocol: a request that forces the model to call the result tool, and the
/// answer to it. Stateless; any thread.
struct OpenAIResponses {
  /// The body of the request.
  [[nodiscard]] static nlohmann::json body(const std::string& model, const std::string& prompt,
                                           std::int64_t recommendationCount);

  /// Names and values of the request's headers; one of them holds the key.
  [[nodiscard]] static std::vector<std::pair<std::string, std::string>>
  headers(const std::string& apiKey);

  /// The arguments of the first function call that can be read, checked. Throws VelmorError with
  /// the provider's own message when it reports an error; DecodingError when the answer is not
  /// JSON.
  [[nodiscard]] static Analysis parse(std::string_view bytes, std::int64_t recommendationCount);
};

} // namespace velmor
