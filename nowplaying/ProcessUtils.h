#pragma once

#include "platform/Platform.h"
#include "platform/RunningApplications.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// What a reader's application is recognised by in the list of running applications.
struct ApplicationIdentity {
  std::string_view bundleIdentifier;
  /// A part of the bundle identifier that is enough; "" for none.
  std::string_view identifierFragment;
  /// Display names in their normalised form.
  std::vector<std::string_view> names;
  bool skipsTerminated = false;
};

/// Looks for running programs. Stateless; any thread. Each look-up by name runs a child to its end.
class ProcessUtils {
public:
  /// True as soon as one of the names is that of a running process, whatever its case.
  [[nodiscard]] static bool isRunning(const Platform& platform,
                                      const std::vector<std::string>& names);

  /// Trimmed, in lower case and without a trailing ".app".
  [[nodiscard]] static std::string normalize(std::string_view name);

  /// The identifiers of the processes of that name, in the system's order.
  [[nodiscard]] static std::vector<std::int32_t> processIDs(const Platform& platform,
                                                            const std::string& name);

  /// The first running application with that identity.
  [[nodiscard]] static std::optional<RunningApplication>
  application(const Platform& platform, const ApplicationIdentity& identity);
};

} // namespace velmor
