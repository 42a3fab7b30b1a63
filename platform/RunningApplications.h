#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

struct RunningApplication {
  /// "" when the application has none.
  std::string bundleIdentifier;
  /// The name as the desktop shows it; "" when unknown.
  std::string localizedName;
  std::int32_t processIdentifier = 0;
  bool terminated = false;
};

/// The desktop's list of running applications.
class RunningApplications {
public:
  virtual ~RunningApplications() = default;

  /// The applications that run now, in the desktop's order. Any thread.
  [[nodiscard]] virtual std::vector<RunningApplication> list() = 0;
};

} // namespace velmor
