#include "update/UpdateService.h"

#include "base/Json.h"
#include "base/Number.h"
#include "base/Text.h"
#include "platform/Environment.h"

#include <algorithm>
#include <optional>
#include <regex>

namespace velmor {

namespace {

/// Reads a member that may be missing or null. False when it has another type than the field.
template <typename Field>
bool readOptional(const nlohmann::json& object, const char* key, Field& field) {
  const auto member = object.find(key);
  if (member == object.end() || member->is_null()) return true;
  const auto* value = member->get_ptr<const Field*>();
  if (value) field = *value;
  return value != nullptr;
}

} // namespace

std::optional<ReleaseResponse> ReleaseResponse::decode(std::string_view body) {
  const auto json = nlohmann::json::parse(body, nullptr, false);
  if (!json.is_object()) return std::nullopt;
  ReleaseResponse response;
  const bool valid = readOptional(json, "ok", response.ok) &&
                     readOptional(json, "platform", response.platform) &&
                     readOptional(json, "version", response.version) &&
                     readOptional(json, "download_url", response.downloadURL) &&
                     readOptional(json, "release_notes_url", response.releaseNotesURL) &&
                     readOptional(json, "error", response.error) &&
                     readOptional(json, "message", response.message);
  return valid ? std::optional(response) : std::nullopt;
}

namespace {

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

/// True when the characters are those of an address and a host, if it names one, is well formed.
bool isValidURL(const std::string& address) {
  const std::regex hostAndPort(R"([^/?#]*://([^/?#@]*@)?)"
                               R"((\[[^\]]*\]|[^\]:\[/?#@]*)(:[0-9]*)?([/?#].*)?)");
  const bool namesHost = address.find("://") != std::string::npos;
  if (namesHost && !std::regex_match(address, hostAndPort)) return false;
  constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "0123456789-._~:/?#[]@!$&'()*+,;=%";
  return address.find_first_not_of(allowed) == std::string_view::npos;
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
    if (left[position] != right[position]) return left[position] < right[position] ? -1 : 1;
  }
  return 0;
}

ReleaseResponse UpdateService::get(const std::string& path) const {
  const auto address = endpoint + path;
  if (!isValidURL(address)) throw UpdateError(false, "Invalid version endpoint.");
  HttpResponse answer;
  try {
    answer = session->send({.url = address, .headers = {{"Accept", "application/json"}}});
  } catch (const AnswerTooLarge&) {
    throw UpdateError(false, "the version server returned an invalid response");
  } catch (const TransportError&) {
    throw UpdateError(true, "version server unavailable");
  }
  const auto release = ReleaseResponse::decode(answer.body);
  if (!release) throw UpdateError(false, "the version server returned an invalid response");
  if (answer.status >= 200 && answer.status <= 299 && release->ok) return *release;
  const auto message = text::trimmed(release->message);
  throw UpdateError(false, message.empty() ? "Version check failed." : std::string(message));
}

} // namespace velmor
