#pragma once

#include "Answer.h"
#include "Protocol.h"
#include "Refusal.h"

#include <optional>

namespace velmor::tools {

/// A refusal in the shape of the protocol's own errors; the message begins with the path.
class RefusalAnswer {
public:
  /// No protocol where the request spoke none.
  static Answer of(std::optional<Protocol> protocol, const Refusal& refusal);

  /// "/path: what is wrong there".
  static std::string message(const Refusal& refusal);
};

} // namespace velmor::tools
