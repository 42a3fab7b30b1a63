#include "model/AppConfig.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace velmor {

namespace {

constexpr std::int64_t currentVersion = 8;
constexpr std::array<std::int64_t, 4> recommendationCounts{3, 5, 7, 10};
constexpr std::array<std::string_view, 6> themes{"light", "dark",         "red-light",
                                                 "red",   "orange-light", "orange"};

bool contains(const auto& values, const auto& value) {
  return std::ranges::find(values, value) != values.end();
}

std::int64_t scaled(std::int64_t length, double factor, std::int64_t minimum) {
  const double product = std::round(factor * static_cast<double>(length));
  // No screen is anywhere near as wide; the bound only keeps the conversion defined.
  constexpr double most = 1e15;
  return std::max(minimum, static_cast<std::int64_t>(std::clamp(product, -most, most)));
}

/// Raises an older record to the present version. Gives the factor by which the page's measures,
/// and so the window, have grown since.
double migrate(AppConfig& config) {
  const WindowSettings defaults;
  if (config.version <= 3) {
    config.window.width = defaults.width;
    config.window.height = defaults.height;
  }
  if (config.version <= 4) config.autoSuggestTracks = false;
  if (config.version <= 5) config.theme = "light";
  const double factor = config.version <= 6 ? 1.1 : 11.0 / 9.0;
  config.version = currentVersion;
  return factor;
}

} // namespace

void AppConfig::normalise() {
  const AppConfig defaults;
  if (version < currentVersion) {
    const double factor = migrate(*this);
    window.width = scaled(window.width, factor, WindowSettings::minimumWidth);
    window.height = scaled(window.height, factor, WindowSettings::minimumHeight);
  }
  if (aiModel.empty()) aiModel = defaults.aiModel;
  if (!contains(recommendationCounts, recommendationCount)) {
    recommendationCount = defaults.recommendationCount;
  }
  if (!(bpmTolerance >= 1.0 && bpmTolerance <= 30.0)) bpmTolerance = defaults.bpmTolerance;
  if (!contains(themes, theme)) theme = defaults.theme;
  if (window.width < WindowSettings::minimumWidth) window.width = defaults.window.width;
  if (window.height < WindowSettings::minimumHeight) window.height = defaults.window.height;
}

} // namespace velmor
