#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace velmor::tools {

/// The tool that a model must call to give its answer, as a request describes it.
class ResultTool {
public:
  static constexpr const char* name = "submit_dj_analysis";

  static std::string description(int count);

  /// The schema of the answer; the strict one forbids further members in every object.
  static nlohmann::json schema(int count, bool strict);
};

} // namespace velmor::tools
