#pragma once

#include "model/Records.h"
#include "platform/HttpSession.h"
#include "platform/Platform.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace velmor {

/// Asks the version server whether a newer release exists.
///
/// The server's address is that of the build, or VELMORDJ_VERSION_URL from the environment; white
/// space around it and slashes at both ends do not count. The request is GET ADDRESS/v1/PLATFORM
/// with "Accept: application/json". The answer is one JSON object, with a status of 200 to 299:
///
///     ok                 true or false: the answer is about a release
///     version            text: the newest release, exactly three integers with points between
///     download_url       text: where to get it
///     release_notes_url  text: where to read about it
///     message            text: what went wrong, when `ok` is not true
///     platform, error    texts that are not used
///
/// Every member may be missing or null: `ok` is then false and a text "". A member of another type
/// makes the answer invalid. Other members are ignored. White space around texts does not count.
class UpdateService {
public:
  /// `platformName` goes into the request; with "" nobody is asked. `currentVersion` is this
  /// program's.
  UpdateService(const Platform& platform, std::string platformName, std::string currentVersion);

  /// Never fails: `offline` when the server cannot be reached, and for every other problem (a bad
  /// address, status, answer or version) no update and "" for `latest`. Blocks for up to about
  /// 8 seconds; any thread.
  [[nodiscard]] UpdateInfo check() const;

  /// By how much `first` is newer than `second` in the first of their numbers that differs; 0 when
  /// they are equal, negative when it is older.
  /// Three integers with points between count; one that is missing or not an integer counts as 0.
  [[nodiscard]] static std::int64_t compareVersions(std::string_view first,
                                                    std::string_view second);

private:
  struct ReleaseResponse;

  /// The answer to a request for that path, if it is about a release. Throws UpdateError.
  [[nodiscard]] ReleaseResponse get(const std::string& path) const;
  /// Sends the request and waits for the answer. Throws UpdateError.
  [[nodiscard]] HttpResponse syncData(const HttpRequest& request) const;

  const std::string endpoint;
  const std::unique_ptr<HttpSession> session;
  const std::string platformName;
  const std::string currentVersion;
};

} // namespace velmor
