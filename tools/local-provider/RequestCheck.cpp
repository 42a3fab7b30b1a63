#include "RequestCheck.h"

#include "HeaderCheck.h"
#include "JsonBody.h"
#include "JsonDifference.h"
#include "PromptReader.h"
#include "Text.h"
#include "WantedRequest.h"

namespace velmor::tools {
namespace {

using nlohmann::json;

std::optional<std::string> textAt(const json& body, const std::string& path) {
  const json::json_pointer pointer(path);
  if (!body.contains(pointer) || !body.at(pointer).is_string()) return std::nullopt;
  return body.at(pointer).get<std::string>();
}

std::string promptPath(Protocol protocol) {
  return protocol == Protocol::responses ? "/input/0/content/0/text" : "/messages/0/content/0/text";
}

std::optional<Difference> modelDifference(Protocol protocol, const std::string& model) {
  const auto name = folded(model);
  if (name.empty()) return Difference{"/model", "must name a model"};
  const bool belongsToResponses = name.starts_with("gpt-");
  if (belongsToResponses == (protocol == Protocol::responses)) return std::nullopt;
  return Difference{"/model",
                    belongsToResponses ? "must not begin with gpt-" : "must begin with gpt-"};
}

std::optional<Difference> bodyDifference(Protocol protocol, const json& body,
                                         const std::string& prompt, int count) {
  const auto model = textAt(body, "/model").value_or("");
  const auto wanted = protocol == Protocol::responses
                          ? WantedRequest::responses(model, prompt, count)
                          : WantedRequest::messages(model, prompt, count);
  if (auto found = JsonDifference::first(wanted, body)) return found;
  return modelDifference(protocol, model);
}

} // namespace

std::variant<Protocol, Refusal> RequestCheck::protocolOf(const ReceivedRequest& request) {
  const auto known = [&](Protocol protocol, const char* method) -> std::variant<Protocol, Refusal> {
    if (request.method == method) return protocol;
    return Refusal{405, {"/method", std::string("must be ") + method}};
  };
  if (request.target == responsesPath) return known(Protocol::responses, "POST");
  if (request.target == messagesPath) return known(Protocol::messages, "POST");
  if (request.target == releasePath) return known(Protocol::release, "GET");
  return Refusal{404, {"/path", "nothing is served here"}};
}

std::variant<ModelRequest, Refusal>
RequestCheck::modelRequest(Protocol protocol, const ReceivedRequest& request) const {
  if (auto refusal = HeaderCheck::refusal(protocol, request, expectedKey)) return *refusal;
  auto read = JsonBody::read(request.body);
  if (const auto* fault = std::get_if<Difference>(&read)) return Refusal{400, *fault};
  auto body = std::get<json>(std::move(read));

  // Without a prompt in its place the count is unknown, but then the comparison meets the
  // missing prompt before the tool, where the count would matter.
  const auto path = promptPath(protocol);
  const auto prompt = textAt(body, path);
  PromptFacts facts;
  if (prompt) {
    const auto result = PromptReader::read(*prompt);
    if (const auto* fault = std::get_if<PromptFault>(&result))
      return Refusal{400, {path, fault->message}};
    facts = std::get<PromptFacts>(result);
  }
  if (auto found = bodyDifference(protocol, body, prompt.value_or(""), facts.count))
    return Refusal{400, *found};
  return ModelRequest{std::move(body), std::move(facts)};
}

std::optional<Refusal> RequestCheck::releaseRefusal(const ReceivedRequest& request) const {
  if (auto refusal = HeaderCheck::refusal(Protocol::release, request, expectedKey)) return refusal;
  if (!request.body.empty()) return Refusal{400, {"/", "the request must have no body"}};
  return std::nullopt;
}

} // namespace velmor::tools
