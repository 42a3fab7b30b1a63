#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// An application that runs, as the desktop describes it.
struct RunningApplication {
  /// "" when the application has none.
  std::string bundleIdentifier;
  /// The name as the desktop shows it; "" when unknown.
  std::string localizedName;
  std::int32_t processIdentifier = 0;
  /// It has ended since the list was made.
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
