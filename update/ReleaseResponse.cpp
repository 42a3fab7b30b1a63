#include "update/ReleaseResponse.h"

#include "model/JsonCoding.h"

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

} // namespace velmor
