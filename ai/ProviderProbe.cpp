#include "ai/ProviderProbe.h"

#include "ai/AIClient.h"
#include "ai/OpenAIResponses.h"
#include "ai/ProviderAnswer.h"
#include "ai/ProviderEndpoint.h"
#include "ai/TinkerMessages.h"
#include "base/Json.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "platform/HttpSession.h"

namespace velmor {

using Json = nlohmann::json;

namespace {

constexpr Seconds patience{30};
/// The least that OpenAI allows.
constexpr int fewTokens = 16;
constexpr auto question = "Answer with the word OK.";

Json openAIBody(const std::string& model) {
  const Json content = {{"type", "input_text"}, {"text", question}};
  return {{"model", model},
          {"input", Json::array({{{"role", "user"}, {"content", Json::array({content})}}})},
          {"max_output_tokens", fewTokens}};
}

Json tinkerBody(const std::string& model) {
  const Json content = {{"type", "text"}, {"text", question}};
  return {{"model", model},
          {"messages", Json::array({{{"role", "user"}, {"content", Json::array({content})}}})},
          {"max_tokens", fewTokens},
          {"thinking", {{"type", "disabled"}}}};
}

/// What the provider says is wrong; "" when it says nothing.
std::string reasonIn(const std::string& body) {
  try {
    const Json answer = JsonDecoder::parse(body);
    const auto error = answer.is_object() ? answer.find("error") : answer.end();
    if (error == answer.end() || !error->is_object()) return "";
    const auto* const message = ProviderAnswer::text(*error, "message");
    return message ? std::string(text::trimmed(text::printable(*message))) : "";
  } catch (const DecodingError&) {
    return "";
  }
}

bool isAnswer(const std::string& body) {
  try {
    return JsonDecoder::parse(body).is_object();
  } catch (const DecodingError&) {
    return false;
  }
}

ProviderProbe judged(const HttpResponse& response, const std::string& provider,
                     const std::string& model) {
  using Fault = ProviderProbe::Fault;
  const auto status = std::to_string(response.status);
  const auto reason = reasonIn(response.body);
  const auto because = reason.empty() ? "." : ": " + reason;
  switch (response.status) {
  case 401:
  case 403:
    // The provider's own words may repeat a part of the key.
    return {Fault::key, provider + " refuses the key (status " + status + ")."};
  case 400:
  case 404:
  case 422:
    return {Fault::model, provider + " does not take the model \"" + model + "\" (status " +
                              status + ")" + because};
  case 402:
  case 429:
    return {Fault::service,
            provider + " sets a limit to this account (status " + status + ")" + because};
  default:
    break;
  }
  if (response.status < 200 || response.status > 299)
    return {Fault::service, provider + " answers with status " + status + because};
  if (ProviderAnswer::isWebPage(response.body))
    return {Fault::reachability, ProviderAnswer::webPageMessage(provider)};
  if (!isAnswer(response.body))
    return {Fault::reachability,
            "What answers at the address does not speak " + provider + "'s protocol."};
  return {Fault::none, provider + " answers, and takes the key and the model."};
}

} // namespace

ProviderProbe ProviderProbe::ask(const Platform& platform, const std::string& apiKey,
                                 const std::string& model) {
  const auto provider = modelProvider(model);
  const bool openAI = provider == ModelProvider::OpenAI;
  const auto endpoint = ProviderEndpoint::of(platform, provider);
  if (!endpoint.fault.empty()) return {Fault::reachability, endpoint.fault};
  try {
    AIClient::requireUsableKey(apiKey);
  } catch (const VelmorError& error) {
    return {Fault::key, error.message()};
  }
  const auto headers = openAI ? OpenAIResponses::headers(apiKey) : TinkerMessages::headers(apiKey);
  const auto body = jsonEncoder().encode(openAI ? openAIBody(model) : tinkerBody(model));
  const auto session =
      platform.http.makeSession({.requestTimeout = patience, .resourceTimeout = patience});
  try {
    const auto response = session->send(
        {.method = "POST", .url = endpoint.address, .headers = headers, .body = body});
    return judged(response, providerName(model), model);
  } catch (const TransportError& error) {
    return {Fault::reachability, error.what()};
  }
}

} // namespace velmor
