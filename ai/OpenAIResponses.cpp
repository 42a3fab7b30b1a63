#include "ai/OpenAIResponses.h"

#include "ai/AnalysisTool.h"
#include "ai/AnalysisValidation.h"
#include "ai/ProviderAnswer.h"
#include "ai/RecommendationPrompt.h"
#include "base/Json.h"
#include "base/VelmorError.h"

#include <optional>

namespace velmor {

using Json = nlohmann::json;

namespace {

constexpr int maximumOutputTokens = 3000;
constexpr auto provider = "OpenAI";
constexpr auto noRecommendations = "OpenAI did not return structured recommendations";

/// The analysis that an output item carries; nothing for any other item, or one that is malformed.
std::optional<Analysis> analysisIn(const Json& item) {
  if (!ProviderAnswer::says(item, "type", "function_call")) return std::nullopt;
  if (!ProviderAnswer::says(item, "name", AnalysisTool::name)) return std::nullopt;
  const auto* arguments = ProviderAnswer::text(item, "arguments");
  if (!arguments) return std::nullopt;
  try {
    return jsonDecoder().decode<Analysis>(*arguments);
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

/// Throws VelmorError.
Analysis firstAnalysis(const Json& answer, std::int64_t recommendationCount) {
  const Json* output = ProviderAnswer::objects(answer, "output");
  if (!output) throw VelmorError(noRecommendations);
  for (const auto& item : *output) {
    if (const auto analysis = analysisIn(item)) {
      return validateAnalysis(*analysis, recommendationCount);
    }
  }
  throw VelmorError(noRecommendations);
}

bool isCutOff(const Json& answer) {
  const auto details = answer.find("incomplete_details");
  return details != answer.end() && details->is_object() &&
         ProviderAnswer::says(*details, "reason", "max_output_tokens");
}

} // namespace

Json OpenAIResponses::body(const std::string& model, const std::string& prompt,
                           std::int64_t recommendationCount) {
  const Json tool = AnalysisTool::analysisTool(recommendationCount);
  const Json content = {{"type", "input_text"}, {"text", prompt}};
  const Json message = {{"role", "user"}, {"content", Json::array({content})}};
  const Json function = {{"type", "function"},
                         {"name", tool["name"]},
                         {"description", tool["description"]},
                         {"parameters", AnalysisTool::strictObjectSchema(tool["input_schema"])},
                         {"strict", true}};
  return {{"model", model},
          {"instructions", RecommendationPrompt::system},
          {"input", Json::array({message})},
          {"tools", Json::array({function})},
          {"tool_choice", {{"type", "function"}, {"name", AnalysisTool::name}}},
          {"max_output_tokens", maximumOutputTokens}};
}

std::vector<std::pair<std::string, std::string>>
OpenAIResponses::headers(const std::string& apiKey) {
  return {{"Authorization", "Bearer " + apiKey}, {"content-type", "application/json"}};
}

Analysis OpenAIResponses::parse(std::string_view bytes, std::int64_t recommendationCount) {
  const Json answer = ProviderAnswer::object(bytes, provider, "invalid OpenAI response");
  try {
    return firstAnalysis(answer, recommendationCount);
  } catch (const VelmorError&) {
    if (isCutOff(answer)) throw VelmorError(ProviderAnswer::cutOffMessage(provider));
    throw;
  }
}

} // namespace velmor
