#include "ai/AnalysisTool.h"

#include <nlohmann/json.hpp>

#include <string>

namespace velmor {

namespace {

using Json = nlohmann::json;

Json simple(const char* type) {
  return {{"type", type}};
}

/// A schema whose properties are all required.
Json objectSchema(const Json& properties) {
  Json required = Json::array();
  // A JSON object's members are kept in ascending order of their names.
  for (const auto& property : properties.items())
    required.push_back(property.key());
  return {{"type", "object"}, {"properties", properties}, {"required", required}};
}

Json trackSchema() {
  return objectSchema({
      {"song", simple("string")},
      {"artist", simple("string")},
      {"album", simple("string")},
      {"bpm", simple("number")},
      {"key", simple("string")},
      {"genre", simple("string")},
      {"energy", simple("integer")},
      {"other", simple("string")},
      {"confidence", simple("integer")},
  });
}

Json recommendationSchema() {
  return objectSchema({
      {"song", simple("string")},
      {"artist", simple("string")},
      {"album", simple("string")},
      {"bpm", simple("number")},
      {"key", simple("string")},
      {"genre", simple("string")},
      {"energy", simple("integer")},
      {"compatibilityScore", simple("integer")},
      {"explanation", simple("string")},
  });
}

} // namespace

Json AnalysisTool::analysisTool(std::int64_t recommendationCount) {
  const Json recommendations = {{"type", "array"},
                                {"minItems", 0},
                                {"maxItems", recommendationCount},
                                {"items", recommendationSchema()}};
  const Json properties = {{"playbackDetected", simple("boolean")},
                           {"playbackEvidence", simple("string")},
                           {"currentTrack", trackSchema()},
                           {"recommendations", recommendations}};
  const Json required =
      Json::array({"playbackDetected", "playbackEvidence", "currentTrack", "recommendations"});
  const auto description =
      "Report whether active playback is confirmed. Return no recommendations when false; "
      "otherwise submit current-track metadata and exactly " +
      std::to_string(recommendationCount) + " ranked recommendations.";
  return {
      {"name", name},
      {"description", description},
      {"input_schema", {{"type", "object"}, {"properties", properties}, {"required", required}}}};
}

Json AnalysisTool::strictObjectSchema(const Json& schema) {
  Json strict = schema;
  for (auto& [key, value] : strict.items()) {
    if (value.is_object()) value = strictObjectSchema(value);
  }
  const auto type = strict.find("type");
  if (type != strict.end() && *type == "object") strict["additionalProperties"] = false;
  return strict;
}

} // namespace velmor
