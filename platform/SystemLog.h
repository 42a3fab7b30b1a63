#pragma once

#include <string_view>

namespace velmor {

/// The system's log. Lines begin with "Velmor: " or "Velmor AppleScript error: ".
class SystemLog {
public:
  virtual ~SystemLog() = default;

  /// Writes one line, with spaces in place of line breaks and other control characters. A log that
  /// cannot be written to is no failure. Any thread. API keys never belong here.
  virtual void write(std::string_view line) = 0;
};

} // namespace velmor
