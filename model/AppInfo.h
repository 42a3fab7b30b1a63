#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace velmor {

/// The application's version, for the page.
struct AppInfo {
  std::string version;
  std::string buildDate;

  bool operator==(const AppInfo&) const = default;
};

void to_json(nlohmann::json& json, const AppInfo& info);
void from_json(const nlohmann::json& json, AppInfo& info);

} // namespace velmor
