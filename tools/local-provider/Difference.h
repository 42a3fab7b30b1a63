#pragma once

#include <string>

namespace velmor::tools {

/// The first place where a request departs from what is wanted.
struct Difference {
  std::string path;    ///< a JSON pointer into the body, or "/headers/NAME" and the like
  std::string message; ///< what is wrong there
};

} // namespace velmor::tools
