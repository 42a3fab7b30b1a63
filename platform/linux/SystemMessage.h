#pragma once

#include <string>

namespace velmor {

/// The system's words for an error number, such as "No such file or directory".
[[nodiscard]] std::string systemMessage(int error);

} // namespace velmor
