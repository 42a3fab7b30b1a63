#include "Provider.h"

#include "Analysis.h"
#include "MessagesAnswer.h"
#include "Ranking.h"
#include "ReleaseAnswer.h"
#include "ResponsesAnswer.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {

Provider::Provider(Setup setup, std::function<int64_t()> now)
    : songs(std::move(setup.songs))
    , version(std::move(setup.version))
    , check(std::move(setup.key))
    , clock(std::move(now)) {}

std::variant<Answer, Refusal> Provider::answer(const ReceivedRequest& request) const {
  const auto protocol = RequestCheck::protocolOf(request);
  if (const auto* refusal = std::get_if<Refusal>(&protocol)) return *refusal;
  if (std::get<Protocol>(protocol) != Protocol::release)
    return modelAnswer(std::get<Protocol>(protocol), request);
  if (auto refusal = check.releaseRefusal(request)) return *refusal;
  return Answer{200, ReleaseAnswer::of(version).dump()};
}

std::variant<Answer, Refusal> Provider::modelAnswer(Protocol protocol,
                                                    const ReceivedRequest& request) const {
  auto checked = check.modelRequest(protocol, request);
  if (const auto* refusal = std::get_if<Refusal>(&checked)) return *refusal;
  const auto& right = std::get<ModelRequest>(checked);
  const auto analysis = Analysis::of(right.facts, Ranking::of(right.facts, songs));
  const auto body = protocol == Protocol::responses ? ResponsesAnswer::of(right, analysis, clock())
                                                    : MessagesAnswer::of(right, analysis);
  return Answer{200, body.dump()};
}

} // namespace velmor::tools
