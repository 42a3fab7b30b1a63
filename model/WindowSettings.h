#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>

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

} // namespace velmor
