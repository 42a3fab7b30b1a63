#include "WantedRequest.h"

#include "ResultTool.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {
namespace {

using nlohmann::json;

constexpr const char* systemText = "You are an expert DJ and music-metadata analyst. Always finish "
                                   "by calling the required result tool.";
constexpr int tokenLimit = 3000;

json userMessage(const char* contentType, const std::string& prompt) {
  const json content = {{"type", contentType}, {"text", prompt}};
  return {{"role", "user"}, {"content", json::array({content})}};
}

} // namespace

json WantedRequest::responses(const std::string& model, const std::string& prompt, int count) {
  const json tool = {{"type", "function"},
                     {"name", ResultTool::name},
                     {"description", ResultTool::description(count)},
                     {"parameters", ResultTool::schema(count, true)},
                     {"strict", true}};
  return {{"model", model},
          {"instructions", systemText},
          {"input", json::array({userMessage("input_text", prompt)})},
          {"tools", json::array({tool})},
          {"tool_choice", {{"type", "function"}, {"name", ResultTool::name}}},
          {"max_output_tokens", tokenLimit}};
}

json WantedRequest::messages(const std::string& model, const std::string& prompt, int count) {
  const json tool = {{"name", ResultTool::name},
                     {"description", ResultTool::description(count)},
                     {"input_schema", ResultTool::schema(count, false)}};
  return {{"model", model},
          {"max_tokens", tokenLimit},
          {"temperature", 0.1},
          {"system", systemText},
          {"thinking", {{"type", "disabled"}}},
          {"tools", json::array({tool})},
          {"tool_choice", {{"type", "tool"}, {"name", ResultTool::name}}},
          {"messages", json::array({userMessage("text", prompt)})}};
}

} // namespace velmor::tools
