#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>

namespace velmor {

/// The tool that the model must call with its answer: the arguments of the call are an Analysis.
struct AnalysisTool {
  static constexpr auto name = "submit_dj_analysis";

  /// Name, description and input schema of the tool, as the Messages protocol writes them.
  /// `recommendationCount` is the number of songs wanted, the most that the schema allows.
  [[nodiscard]] static nlohmann::json analysisTool(std::int64_t recommendationCount);

  /// The schema with "additionalProperties": false in every object, as OpenAI wants it.
  [[nodiscard]] static nlohmann::json strictObjectSchema(const nlohmann::json& schema);
};

} // namespace velmor
