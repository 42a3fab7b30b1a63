#pragma once

#include "platform/Platform.h"

#include <optional>
#include <string>

namespace velmor {

/// The version and the build date. Each is found out once, on first use. Main thread.
class BuildInfo {
public:
  explicit BuildInfo(const Platform& thePlatform) : platform(thePlatform) {}

  [[nodiscard]] const std::string& version();

  /// As the build wrote it down, else the day of first use in the user's language and time zone.
  [[nodiscard]] const std::string& buildDate();

private:
  Platform platform;
  std::optional<std::string> knownVersion;
  std::optional<std::string> knownDate;
};

} // namespace velmor
