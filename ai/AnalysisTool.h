#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>

namespace velmor {

/// The tool that the model has to call with its answer, whose arguments are an Analysis.
struct AnalysisTool {
  static constexpr auto name = "submit_dj_analysis";

  /// The tool's name, description and input schema, for a wanted number of recommendations.
  [[nodiscard]] static nlohmann::json analysisTool(std::int64_t recommendationCount);

  /// The schema with every object closed against properties that it does not list.
  [[nodiscard]] static nlohmann::json strictObjectSchema(const nlohmann::json& schema);
};

} // namespace velmor
