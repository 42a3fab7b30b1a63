#pragma once

#include <string>

namespace velmor::tools {

/// Where a prompt departs from its template.
struct PromptFault {
  std::string message; ///< begins with the line's number where there is one
};

} // namespace velmor::tools
