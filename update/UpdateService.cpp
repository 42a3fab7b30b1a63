#include "update/UpdateService.h"

#include "base/Json.h"
#include "base/Number.h"
#include "base/Text.h"
#include "platform/Environment.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <utility>

namespace velmor {

/// What the version server answers.
struct UpdateService::ReleaseResponse {
  bool ok = false;
  std::string platform;
  std::string version;
  std::string downloadURL;
  std::string releaseNotesURL;
  std::string error;
  std::string message;

  static constexpr auto fields() {
    return std::tuple{
        Field{"ok", &ReleaseResponse::ok},
        Field{"platform", &ReleaseResponse::platform},
        Field{"version", &ReleaseResponse::version},
        Field{"download_url", &ReleaseResponse::downloadURL},
        Field{"release_notes_url", &ReleaseResponse::releaseNotesURL},
        Field{"error", &ReleaseResponse::error},
        Field{"message", &ReleaseResponse::message},
    };
  }
};

namespace {

/// A version check that gave no release.
class UpdateError : public std::runtime_error {
public:
  UpdateError(bool offline, const std::string& message)
      : std::runtime_error(message), isOffline(offline) {}

  /// The server could not be reached.
  const bool isOffline;
};

constexpr auto invalidResponse = "the version server returned an invalid response";
constexpr Seconds sessionTimeout{8};

std::string_view withoutSlashes(std::string_view address) {
  while (address.starts_with('/'))
    address.remove_prefix(1);
  while (address.ends_with('/'))
    address.remove_suffix(1);
  return address;
}

std::string chosenEndpoint(const Environment& environment) {
  const auto address = environment.variable("VELMORDJ_VERSION_URL").value_or(VELMOR_VERSION_SERVER);
  return std::string(withoutSlashes(text::trimmed(address)));
}

/// "host", "host:port" or "[address]:port", with or without "user@" before it.
bool isAuthority(std::string_view text) {
  if (const auto at = text.find('@'); at != std::string_view::npos) text.remove_prefix(at + 1);
  const bool isBracketed = text.starts_with('[');
  const auto last = text.find_first_of(isBracketed ? "]" : ":[]@");
  if (isBracketed && last == std::string_view::npos) return false;
  const auto port = text.substr(std::min(isBracketed ? last + 1 : last, text.size()));
  return port.empty() ||
         (port.front() == ':' && port.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

/// True when the characters are those of an address and a host, if it names one, is well formed.
bool isValidURL(std::string_view address) {
  constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "0123456789-._~:/?#[]@!$&'()*+,;=%";
  if (address.find_first_not_of(allowed) != std::string_view::npos) return false;
  constexpr std::string_view afterScheme = "://";
  const auto scheme = address.find(afterScheme);
  if (scheme == std::string_view::npos) return true;
  if (address.find_first_of("/?#") != scheme + 1) return false;
  const auto rest = address.substr(scheme + afterScheme.size());
  return isAuthority(rest.substr(0, rest.find_first_of("/?#")));
}

/// True for exactly three decimal integers between dots.
bool isReleaseVersion(std::string_view version) {
  if (std::ranges::count(version, '.') != 2) return false;
  const auto pieces = text::split(version, '.');
  return pieces.size() == 3 && std::ranges::all_of(pieces, [](std::string_view piece) {
           return number::parseInteger<std::int64_t>(piece).has_value();
         });
}

std::array<std::int64_t, 3> versionParts(std::string_view version) {
  std::array<std::int64_t, 3> parts{};
  std::size_t position = 0;
  for (const auto piece : text::split(version, '.')) {
    if (position == parts.size()) break;
    parts[position++] = number::parseInteger<std::int64_t>(piece).value_or(0);
  }
  return parts;
}

/// `left` minus `right`, or the nearest number that there is.
std::int64_t difference(std::int64_t left, std::int64_t right) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (right < 0) return left > Limits::max() + right ? Limits::max() : left - right;
  return left < Limits::min() + right ? Limits::min() : left - right;
}

} // namespace

UpdateService::UpdateService(const Platform& platform, std::string name, std::string version)
    : endpoint(chosenEndpoint(platform.environment))
    , session(platform.http.makeSession(
          {.requestTimeout = sessionTimeout, .resourceTimeout = sessionTimeout}))
    , platformName(std::move(name))
    , currentVersion(std::move(version)) {}

UpdateInfo UpdateService::check() const {
  UpdateInfo info{.current = currentVersion};
  if (platformName.empty()) return info;
  try {
    const auto release = get("/v1/" + platformName);
    const auto latest = text::trimmed(release.version);
    if (!isReleaseVersion(latest)) return info;
    info.latest = latest;
    info.updateAvailable = compareVersions(latest, currentVersion) > 0;
    info.downloadUrl = text::trimmed(release.downloadURL);
    info.releaseNotesUrl = text::trimmed(release.releaseNotesURL);
  } catch (const UpdateError& error) {
    info.offline = error.isOffline;
  } catch (const std::exception&) {
    // No release is known, whatever has gone wrong on this side.
  }
  return info;
}

std::int64_t UpdateService::compareVersions(std::string_view first, std::string_view second) {
  const auto left = versionParts(first);
  const auto right = versionParts(second);
  for (std::size_t position = 0; position < left.size(); ++position) {
    if (left[position] != right[position]) return difference(left[position], right[position]);
  }
  return 0;
}

UpdateService::ReleaseResponse UpdateService::get(const std::string& path) const {
  const auto address = endpoint + path;
  if (!isValidURL(address)) throw UpdateError(false, "Invalid version endpoint.");
  const auto answer = syncData({.url = address, .headers = {{"Accept", "application/json"}}});
  ReleaseResponse release;
  try {
    release = jsonDecoder().decodeLeniently<ReleaseResponse>(answer.body);
  } catch (const DecodingError&) {
    throw UpdateError(false, invalidResponse);
  }
  if (answer.status >= 200 && answer.status <= 299 && release.ok) return release;
  const auto message = text::trimmed(release.message);
  throw UpdateError(false, message.empty() ? "Version check failed." : std::string(message));
}

HttpResponse UpdateService::syncData(const HttpRequest& request) const {
  try {
    return session->send(request);
  } catch (const AnswerTooLarge&) {
    throw UpdateError(false, invalidResponse);
  } catch (const TransportError&) {
    throw UpdateError(true, "version server unavailable");
  }
}

} // namespace velmor
