#include "ai/TinkerMessages.h"

#include "ai/AnalysisTool.h"
#include "ai/AnalysisValidation.h"
#include "ai/ProviderAnswer.h"
#include "ai/RecommendationPrompt.h"
#include "base/Json.h"
#include "base/Text.h"
#include "base/VelmorError.h"

namespace velmor {

using Json = nlohmann::json;

namespace {

constexpr int maximumTokens = 3000;
constexpr double temperature = 0.1;
constexpr auto provider = "Tinker";
constexpr auto undecodable = "decode recommendations";

/// The input of the first call of the result tool; null when there is none.
const Json* toolInput(const Json& blocks) {
  for (const auto& block : blocks) {
    if (ProviderAnswer::says(block, "type", "tool_use") &&
        ProviderAnswer::says(block, "name", AnalysisTool::name) && block.contains("input")) {
      return &block["input"];
    }
  }
  return nullptr;
}

std::string joinedText(const Json& blocks) {
  std::string joined;
  for (const auto& block : blocks) {
    if (const auto* part = ProviderAnswer::text(block, "text")) joined += *part;
  }
  return joined;
}

/// An analysis written as text, perhaps fenced as a code block. Throws VelmorError or
/// DecodingError.
Analysis parseAnalysisText(std::string_view given) {
  const auto unfenced =
      text::replacingAll(text::replacingAll(text::trimmed(given), "```json", ""), "```", "");
  auto analysis = jsonDecoder().decode<Analysis>(unfenced);
  if (analysis.playbackDetected && analysis.recommendations.empty()) throw VelmorError(undecodable);
  return analysis;
}

Analysis analysisInText(const std::string& text) {
  if (text.empty()) throw VelmorError(undecodable);
  try {
    return parseAnalysisText(text);
  } catch (const std::exception&) {
    throw VelmorError(undecodable);
  }
}

/// Throws VelmorError or DecodingError.
Analysis analysisOf(const Json& answer, std::int64_t recommendationCount) {
  const Json* blocks = ProviderAnswer::objects(answer, "content");
  if (!blocks) throw VelmorError(undecodable);
  const Json* input = toolInput(*blocks);
  const auto analysis = input ? input->get<Analysis>() : analysisInText(joinedText(*blocks));
  return validateAnalysis(analysis, recommendationCount);
}

} // namespace

Json TinkerMessages::body(const std::string& model, const std::string& prompt,
                          std::int64_t recommendationCount) {
  const Json content = {{"type", "text"}, {"text", prompt}};
  const Json message = {{"role", "user"}, {"content", Json::array({content})}};
  return {{"model", model},
          {"max_tokens", maximumTokens},
          {"temperature", temperature},
          {"system", RecommendationPrompt::system},
          {"thinking", {{"type", "disabled"}}},
          {"tools", Json::array({AnalysisTool::analysisTool(recommendationCount)})},
          {"tool_choice", {{"type", "tool"}, {"name", AnalysisTool::name}}},
          {"messages", Json::array({message})}};
}

std::vector<std::pair<std::string, std::string>>
TinkerMessages::headers(const std::string& apiKey) {
  return {{"x-api-key", apiKey},
          {"anthropic-version", "2023-06-01"},
          {"content-type", "application/json"}};
}

Analysis TinkerMessages::parseTinkerResponse(std::string_view data,
                                             std::int64_t recommendationCount) {
  const Json answer = ProviderAnswer::object(data, provider, "decode Tinker response");
  try {
    return analysisOf(answer, recommendationCount);
  } catch (const std::exception&) {
    const bool isCutOff = ProviderAnswer::says(answer, "stop_reason", "max_tokens");
    if (isCutOff) throw VelmorError(ProviderAnswer::cutOffMessage(provider));
    throw;
  }
}

} // namespace velmor
