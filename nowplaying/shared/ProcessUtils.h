#pragma once

#include "platform/Platform.h"
#include "platform/RunningApplications.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// How to recognise a program in the list of running applications: any one of these is enough.
struct ApplicationIdentity {
  /// The whole bundle identifier.
  std::string_view bundleIdentifier;
  /// A part of the bundle identifier; "" when no part is enough.
  std::string_view identifierFragment;
  /// Names as `ProcessUtils::normalize` gives them.
  std::vector<std::string_view> names;
  /// Passes over applications that have ended but are still listed.
  bool skipsTerminated = false;
};

/// Looks for running programs. Each look-up by process name asks the launcher for pgrep and waits
/// for its answer. Stateless; any thread. Never throws.
class ProcessUtils {
public:
  /// True when a process with one of these names runs. Upper and lower case are the same.
  [[nodiscard]] static bool isRunning(const Platform& platform,
                                      const std::vector<std::string>& names);

  /// Trimmed, in lower case and without a trailing ".app".
  [[nodiscard]] static std::string normalize(std::string_view name);

  /// The identifiers of the processes with this name, in the system's order.
  [[nodiscard]] static std::vector<std::int32_t> processIDs(const Platform& platform,
                                                            const std::string& name);

  /// The applications of the list with this identity, in its order.
  [[nodiscard]] static std::vector<RunningApplication>
  applications(const Platform& platform, const ApplicationIdentity& identity);

  /// The first of them.
  [[nodiscard]] static std::optional<RunningApplication>
  application(const Platform& platform, const ApplicationIdentity& identity);
};

} // namespace velmor
