#pragma once

#include "base/Record.h"

#include <cstdint>
#include <string>

namespace velmor {

/// The main window's saved frame in whole screen points, origin at the bottom left of the main
/// screen.
struct WindowSettings {
  static constexpr std::int64_t minimumWidth = 376;
  static constexpr std::int64_t minimumHeight = 495;

  /// The lower left corner. Negative while no place has been saved; the window is then centred.
  std::int64_t x = -1;
  std::int64_t y = -1;
  std::int64_t width = 461;
  std::int64_t height = 592;

  static constexpr auto fields() {
    return std::tuple{
        Field{"x", &WindowSettings::x},
        Field{"y", &WindowSettings::y},
        Field{"width", &WindowSettings::width},
        Field{"height", &WindowSettings::height},
    };
  }
};

/// The user's settings, as they are stored and as the page edits them. The JSON form follows from
/// `fields()` (base/Json.h) and wants every key. Any values decode; `normalise` puts them right.
struct AppConfig {
  /// Format version of the stored record. The defaults here are those of version 6; `normalise`
  /// raises what is older than 8 and leaves what is newer.
  std::int64_t version = 6;
  /// Keys for the model providers; "" when there is none. Secret: only the settings file and the
  /// request to the provider carry them.
  std::string tinkerApiKey;
  std::string openaiApiKey;
  /// The model to ask. A name that begins with "gpt-" selects OpenAI, every other Tinker.
  std::string aiModel = "thinkingmachines/Inkling-Small";
  /// How many tracks to ask for: 3, 5, 7 or 10.
  std::int64_t recommendationCount = 10;
  /// How far a suggestion's tempo may lie from the current one, 1 to 30 BPM.
  double bpmTolerance = 10.0;
  /// Ask for suggestions by itself whenever another track plays.
  bool autoSuggestTracks = false;
  /// The page's colours: "light", "dark", "red-light", "red", "orange-light" or "orange".
  std::string theme = "light";
  WindowSettings window;

  /// Brings a record of any version to the present format and every value into its range: what
  /// is out of range becomes its default. Never fails.
  void normalise();

  static constexpr auto fields() {
    return std::tuple{
        Field{"version", &AppConfig::version},
        Field{"tinkerApiKey", &AppConfig::tinkerApiKey},
        Field{"openaiApiKey", &AppConfig::openaiApiKey},
        Field{"aiModel", &AppConfig::aiModel},
        Field{"recommendationCount", &AppConfig::recommendationCount},
        Field{"bpmTolerance", &AppConfig::bpmTolerance},
        Field{"autoSuggestTracks", &AppConfig::autoSuggestTracks},
        Field{"theme", &AppConfig::theme},
        Field{"window", &AppConfig::window},
    };
  }
};

} // namespace velmor
