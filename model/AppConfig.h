#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>

namespace velmor {

/// The main window's saved frame in whole points, origin at the bottom left of the main screen.
struct WindowSettings {
  static constexpr std::int64_t minimumWidth = 376;
  static constexpr std::int64_t minimumHeight = 495;

  /// Negative while no place has been saved, like `y`.
  std::int64_t x = -1;
  std::int64_t y = -1;
  std::int64_t width = 461;
  std::int64_t height = 592;

  bool operator==(const WindowSettings&) const = default;
};

void to_json(nlohmann::json& json, const WindowSettings& window);
void from_json(const nlohmann::json& json, WindowSettings& window);

/// The user's settings, as they are stored and as the page edits them.
struct AppConfig {
  /// Format version of the stored record. The defaults are those of version 6.
  std::int64_t version = 6;
  std::string tinkerApiKey;
  std::string openaiApiKey;
  /// A name that begins with "gpt-" selects OpenAI, every other Tinker.
  std::string aiModel = "thinkingmachines/Inkling-Small";
  /// 3, 5, 7 or 10.
  std::int64_t recommendationCount = 10;
  /// How far a suggestion's tempo may lie from the current one, 1 to 30 BPM.
  double bpmTolerance = 10.0;
  bool autoSuggestTracks = false;
  /// "light", "dark", "red-light", "red", "orange-light" or "orange".
  std::string theme = "light";
  WindowSettings window;

  bool operator==(const AppConfig&) const = default;

  /// Brings a record of any version to the present format and every value into its range.
  void normalise();
};

void to_json(nlohmann::json& json, const AppConfig& config);
void from_json(const nlohmann::json& json, AppConfig& config);

} // namespace velmor
