#pragma once

#include "model/UpdateInfo.h"
#include "platform/HttpSession.h"
#include "platform/Platform.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace velmor {

struct ReleaseResponse;

/// Asks the version server whether a newer release exists.
class UpdateService {
public:
  /// `platformName` chooses what the server is asked about; `currentVersion` is this program's.
  UpdateService(const Platform& platform, std::string platformName, std::string currentVersion);

  /// Never fails: a server that cannot be reached is `offline`, every other problem is no update.
  /// Blocks for up to about 8 seconds; any thread.
  [[nodiscard]] UpdateInfo check() const;

  /// Positive when `first` is newer than `second`, 0 when they are equal, negative when older.
  [[nodiscard]] static std::int64_t compareVersions(std::string_view first,
                                                    std::string_view second);

private:
  /// Throws UpdateError.
  [[nodiscard]] ReleaseResponse get(const std::string& path) const;

  const std::string endpoint;
  const std::unique_ptr<HttpSession> session;
  const std::string platformName;
  const std::string currentVersion;
};

} // namespace velmor
