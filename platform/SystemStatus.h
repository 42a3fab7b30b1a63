#pragma once

#include <string>
#include <vector>

namespace velmor {

/// Something of the system that Velmor needs and that may be missing: a display, a permission, a
/// sound server.
struct SystemService {
  /// "Display", say.
  std::string name;
  bool available = false;
  /// What was found, in a few words.
  std::string detail;
  /// What the user can do about it; "" when it is available.
  std::string advice;
};

/// What state the system is in, asked when something does not work.
class SystemStatus {
public:
  virtual ~SystemStatus() = default;

  /// The services of this system. Waits for each a few seconds at most. Any
  /// thread.
  [[nodiscard]] virtual std::vector<SystemService> services() = 0;
};

} // namespace velmor
