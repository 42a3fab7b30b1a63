#pragma once

#include <string>
#include <string_view>

namespace velmor {

/// Musical keys in Camelot notation, "1A" to "12B", in which neighbours mix well.
class CamelotKey {
public:
  /// Converts any spelling of a key ("A minor", "F♯m", "8a"); a text that it cannot read comes
  /// back trimmed. Never fails; any thread.
  [[nodiscard]] static std::string toCamelot(std::string_view key);
};

} // namespace velmor
