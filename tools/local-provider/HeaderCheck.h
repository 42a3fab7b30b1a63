#pragma once

#include "Protocol.h"
#include "ReceivedRequest.h"
#include "Refusal.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmor::tools {

/// Holds the headers against those a protocol demands. What HTTP clients add by themselves
/// (host, user-agent, accept, accept-encoding, connection, content-length) is let pass.
class HeaderCheck {
public:
  static std::optional<Refusal> refusal(Protocol protocol, const ReceivedRequest& request,
                                        const std::string& expectedKey);

  /// The key within the value of a key header ("authorization" or "x-api-key"); nothing when
  /// the value is not well-formed or the header carries no key.
  static std::optional<std::string_view> keyIn(std::string_view name, std::string_view value);
};

} // namespace velmor::tools
