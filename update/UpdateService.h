#pragma once

#include "model/Records.h"
#include "platform/HttpSession.h"
#include "platform/Platform.h"

#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velmor {

/// A version check that gave no release.
class UpdateError : public std::runtime_error {
public:
  UpdateError(bool offline, const std::string& message)
      : std::runtime_error(message), isOffline(offline) {}

  /// The server could not be reached.
  const bool isOffline;
};

/// What the version server answers. Every member may be missing or null.
struct ReleaseResponse {
  bool ok = false;
  std::string platform;
  std::string version;
  std::string downloadURL;
  std::string releaseNotesURL;
  std::string error;
  std::string message;

  /// Nothing when the body is not such an answer: not an object, or a member of a wrong type.
  [[nodiscard]] static std::optional<ReleaseResponse> decode(std::string_view body);
};

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
