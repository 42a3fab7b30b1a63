#include "analysis/ExtractorReport.h"

#include "base/Json.h"

namespace velmor {

using Json = nlohmann::json;

namespace {

Json objectIn(const Json& parent, const char* key) {
  if (!parent.is_object()) return Json::object();
  const auto found = parent.find(key);
  return found != parent.end() && found->is_object() ? *found : Json::object();
}

double numberIn(const Json& parent, const char* key) {
  const auto found = parent.find(key);
  return found != parent.end() && found->is_number() ? found->get<double>() : 0;
}

std::string textIn(const Json& parent, const char* key) {
  const auto found = parent.find(key);
  return found != parent.end() && found->is_string() ? found->get<std::string>() : "";
}

} // namespace

AudioAnalysisService::Features ExtractorReport::features(std::string_view report) {
  const Json root = JsonDecoder::parse(report);
  const Json key = objectIn(objectIn(root, "tonal"), "key_edma");
  return {.bpm = numberIn(objectIn(root, "rhythm"), "bpm"),
          .key = textIn(key, "key"),
          .scale = textIn(key, "scale"),
          .loudness = numberIn(objectIn(root, "lowlevel"), "average_loudness")};
}

} // namespace velmor
