#pragma once

#include "platform/Platform.h"

#include <optional>
#include <string>

namespace velmor {

/// The program's version and build date. Each is looked up once, when it is first asked for. Main
/// thread.
class BuildInfo {
public:
  explicit BuildInfo(const Platform& thePlatform) : platform(thePlatform) {}

  /// As the bundle says, "1.0.0" when it says nothing.
  [[nodiscard]] const std::string& version();

  /// As the build wrote it down, for example "23.11.2026"; else today's date in the user's time
  /// zone.
  [[nodiscard]] const std::string& buildDate();

private:
  Platform platform;
  std::optional<std::string> knownVersion;
  std::optional<std::string> knownDate;
};

} // namespace velmor
