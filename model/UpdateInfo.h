#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace velmor {

/// The outcome of a version check.
struct UpdateInfo {
  std::string current;
  /// "" when the check got none.
  std::string latest;
  bool updateAvailable = false;
  /// "" when there is none, like `releaseNotesUrl`.
  std::string downloadUrl;
  std::string releaseNotesUrl;
  /// The version server could not be reached.
  bool offline = false;

  bool operator==(const UpdateInfo&) const = default;
};

void to_json(nlohmann::json& json, const UpdateInfo& info);
void from_json(const nlohmann::json& json, UpdateInfo& info);

} // namespace velmor
