#include "ai/AIClient.h"

#include "ai/AnalysisValidation.h"
#include "ai/OpenAIResponses.h"
#include "ai/RecommendationPrompt.h"
#include "ai/TinkerMessages.h"
#include "base/Json.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "model/ModelProvider.h"
#include "platform/async/Waiting.h"

#include <string_view>

namespace velmor {

namespace {

constexpr Seconds sessionTimeout{45};
constexpr Seconds requestTimeout{60};
/// For an answer of which something arrives now and then: the model itself takes less.
constexpr Seconds exchangeTimeout{170};

} // namespace

AIClient::AIClient(const Platform& platform, ProviderEndpoint tinker, ProviderEndpoint openAI)
    : loop(platform.mainLoop)
    , tinkerEndpoint(std::move(tinker))
    , openAIEndpoint(std::move(openAI))
    , session(platform.http.makeSession(
          {.requestTimeout = sessionTimeout, .resourceTimeout = exchangeTimeout})) {}

void AIClient::check(const Request& request) const {
  requireUsableKey(request.apiKey);
  if (request.current.song.empty() || request.current.artist.empty()) {
    throw VelmorError("current track metadata is incomplete");
  }
  const bool openAI = modelProvider(request.model) == ModelProvider::OpenAI;
  const auto& fault = openAI ? openAIEndpoint.fault : tinkerEndpoint.fault;
  if (!fault.empty()) throw VelmorError(fault);
}

void AIClient::requireUsableKey(const std::string& apiKey) {
  // The one sentence covers both providers; the pipeline has already named the right one.
  if (text::trimmed(apiKey).empty()) throw VelmorError("Tinker API key is not configured");
  if (apiKey.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos) return;
  throw VelmorError("The API key contains a line break. Enter it again without one.");
}

Task<Analysis> AIClient::recommend(Request request) {
  check(request);
  const auto prompt = RecommendationPrompt::text(request.current, request.source,
                                                 request.bpmTolerance, request.recommendationCount);
  const bool openAI = modelProvider(request.model) == ModelProvider::OpenAI;
  auto exchange = openAI ? requestOpenAI(request, prompt) : requestTinker(request, prompt);
  Analysis analysis = co_await exchange;
  analysis.currentTrack = request.current;
  co_return validateAnalysis(analysis, request.recommendationCount);
}

Task<Analysis> AIClient::requestOpenAI(const Request& request, const std::string& prompt) {
  const auto headers = OpenAIResponses::headers(request.apiKey);
  const auto body = OpenAIResponses::body(request.model, prompt, request.recommendationCount);
  const auto bytes = co_await postJSON(openAIEndpoint.address, headers, body);
  co_return OpenAIResponses::parse(bytes, request.recommendationCount);
}

Task<Analysis> AIClient::requestTinker(const Request& request, const std::string& prompt) {
  const auto headers = TinkerMessages::headers(request.apiKey);
  const auto body = TinkerMessages::body(request.model, prompt, request.recommendationCount);
  const auto bytes = co_await postJSON(tinkerEndpoint.address, headers, body);
  co_return TinkerMessages::parseTinkerResponse(bytes, request.recommendationCount);
}

Task<std::string> AIClient::postJSON(const std::string& url, const Headers& headers,
                                     const nlohmann::json& body) {
  const Cancellation cancellation;
  HttpRequest request{.method = "POST",
                      .url = url,
                      .headers = headers,
                      .body = jsonEncoder().encode(body),
                      .timeout = requestTimeout,
                      .cancellation = cancellation};
  const auto send = [session = session, request = std::move(request)] {
    return session->send(request);
  };
  HttpResponse response = co_await onWorker(loop, send, cancellation);
  if (response.status < 200 || response.status > 299) {
    throw VelmorError("request failed with status " + std::to_string(response.status),
                      response.status);
  }
  co_return std::move(response.body);
}

} // namespace velmor
