#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace velmor {

/// What the page needs to know about the services.
struct AppState {
  /// There is an API key for the configured model.
  bool aiAvailable = false;
  /// The audio extractor is installed.
  bool essentiaAvailable = false;
  /// A status text.
  std::string provider;

  bool operator==(const AppState&) const = default;
};

void to_json(nlohmann::json& json, const AppState& state);
void from_json(const nlohmann::json& json, AppState& state);

} // namespace velmor
