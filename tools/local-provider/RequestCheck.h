#pragma once

#include "ModelRequest.h"
#include "Protocol.h"
#include "ReceivedRequest.h"
#include "Refusal.h"

#include <optional>
#include <string>
#include <variant>

namespace velmor::tools {

/// Lets nothing pass but a request that is right in every header, member and schema keyword,
/// and names the first thing that is not. Safe to use from several threads at once.
class RequestCheck {
public:
  explicit RequestCheck(std::string key) : expectedKey(std::move(key)) {}

  /// The protocol that a request speaks, by its path and method: 404 and 405 otherwise.
  static std::variant<Protocol, Refusal> protocolOf(const ReceivedRequest& request);

  /// `protocol` is `responses` or `messages`.
  std::variant<ModelRequest, Refusal> modelRequest(Protocol protocol,
                                                   const ReceivedRequest& request) const;

  std::optional<Refusal> releaseRefusal(const ReceivedRequest& request) const;

private:
  std::string expectedKey;
};

} // namespace velmor::tools
