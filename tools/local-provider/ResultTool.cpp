#include "ResultTool.h"

#include <nlohmann/json.hpp>

#include <initializer_list>

namespace velmor::tools {
namespace {

using nlohmann::json;

json propertiesOf(std::initializer_list<const char*> texts,
                  std::initializer_list<const char*> integers) {
  json properties = {{"bpm", {{"type", "number"}}}};
  for (const auto* name : texts)
    properties[name] = {{"type", "string"}};
  for (const auto* name : integers)
    properties[name] = {{"type", "integer"}};
  return properties;
}

/// All properties are required; the list of their names is in ascending order.
json recordSchema(const json& properties, bool strict) {
  json required = json::array();
  for (const auto& [name, schema] : properties.items())
    required.push_back(name);
  json schema = {{"type", "object"}, {"properties", properties}, {"required", required}};
  if (strict) schema["additionalProperties"] = false;
  return schema;
}

} // namespace

std::string ResultTool::description(int count) {
  return "Report whether active playback is confirmed. Return no recommendations when false; "
         "otherwise submit current-track metadata and exactly " +
         std::to_string(count) + " ranked recommendations.";
}

json ResultTool::schema(int count, bool strict) {
  const auto track = recordSchema(
      propertiesOf({"song", "artist", "album", "key", "genre", "other"}, {"energy", "confidence"}),
      strict);
  const auto recommendation =
      recordSchema(propertiesOf({"song", "artist", "album", "key", "genre", "explanation"},
                                {"energy", "compatibilityScore"}),
                   strict);
  auto schema = recordSchema(
      {{"playbackDetected", {{"type", "boolean"}}},
       {"playbackEvidence", {{"type", "string"}}},
       {"currentTrack", track},
       {"recommendations",
        {{"type", "array"}, {"minItems", 0}, {"maxItems", count}, {"items", recommendation}}}},
      strict);
  // Here the order is the one in which the answer is to be thought out.
  schema["required"] = {"playbackDetected", "playbackEvidence", "currentTrack", "recommendations"};
  return schema;
}

} // namespace velmor::tools
