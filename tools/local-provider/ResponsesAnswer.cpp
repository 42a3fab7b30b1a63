#include "ResponsesAnswer.h"

#include "ResultTool.h"
#include "StableId.h"
#include "TokenCount.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {
namespace {

using nlohmann::json;

json output(const std::string& seed, const std::string& arguments) {
  const json reasoning = {
      {"id", StableId::of("rs_", seed, 48)}, {"type", "reasoning"}, {"summary", json::array()}};
  const json call = {{"id", StableId::of("fc_", seed, 48)},
                     {"type", "function_call"},
                     {"status", "completed"},
                     {"arguments", arguments},
                     {"call_id", StableId::of("call_", seed, 24)},
                     {"name", ResultTool::name}};
  return json::array({reasoning, call});
}

json usage(const std::string& question, const std::string& arguments) {
  const auto input = tokenCount(question);
  const auto answered = tokenCount(arguments);
  return {{"input_tokens", input},
          {"input_tokens_details", {{"cached_tokens", 0}}},
          {"output_tokens", answered},
          {"output_tokens_details", {{"reasoning_tokens", 0}}},
          {"total_tokens", input + answered}};
}

} // namespace

json ResponsesAnswer::of(const ModelRequest& request, const json& analysis, int64_t createdAt) {
  const auto& body = request.body;
  const auto seed = body.dump();
  const auto arguments = analysis.dump();
  return {{"id", StableId::of("resp_", seed, 48)},
          {"object", "response"},
          {"created_at", createdAt},
          {"status", "completed"},
          {"background", false},
          {"error", nullptr},
          {"incomplete_details", nullptr},
          {"instructions", body.at("instructions")},
          {"max_output_tokens", body.at("max_output_tokens")},
          {"metadata", json::object()},
          {"model", body.at("model")},
          {"output", output(seed, arguments)},
          {"parallel_tool_calls", true},
          {"previous_response_id", nullptr},
          {"reasoning", {{"effort", nullptr}, {"summary", nullptr}}},
          {"store", true},
          {"temperature", 1.0},
          {"text", {{"format", {{"type", "text"}}}}},
          {"tool_choice", body.at("tool_choice")},
          {"tools", body.at("tools")},
          {"top_p", 1.0},
          {"truncation", "disabled"},
          {"usage", usage(seed, arguments)},
          {"user", nullptr}};
}

} // namespace velmor::tools
