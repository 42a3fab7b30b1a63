#include "MessagesAnswer.h"

#include "ResultTool.h"
#include "StableId.h"
#include "TokenCount.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {

using nlohmann::json;

json MessagesAnswer::of(const ModelRequest& request, const json& analysis) {
  const auto seed = request.body.dump();
  const json text = {{"type", "text"}, {"text", "Here is what I would play next."}};
  const json call = {{"type", "tool_use"},
                     {"id", StableId::of("toolu_01", seed, 22)},
                     {"name", ResultTool::name},
                     {"input", analysis}};
  return {{"id", StableId::of("msg_01", seed, 22)},
          {"type", "message"},
          {"role", "assistant"},
          {"model", request.body.at("model")},
          {"content", json::array({text, call})},
          {"stop_reason", "tool_use"},
          {"stop_sequence", nullptr},
          {"usage",
           {{"input_tokens", tokenCount(seed)},
            {"cache_creation_input_tokens", 0},
            {"cache_read_input_tokens", 0},
            {"output_tokens", tokenCount(analysis.dump())}}}};
}

} // namespace velmor::tools
