#pragma once

#include <string>

namespace velmor::tools {

/// What goes back over the wire; the body is JSON.
struct Answer {
  int status = 200; ///< HTTP status
  std::string body;
};

} // namespace velmor::tools
