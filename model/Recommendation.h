#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>

namespace velmor {

/// One suggested next track. Its place in a list is its rank, the first being the best.
struct Recommendation {
  std::string song;
  std::string artist;
  std::string album;
  double bpm = 0;
  /// In Camelot notation after validation; "" when unknown.
  std::string key;
  std::string genre;
  /// 0 to 100, as the model gives it.
  std::int64_t energy = 0;
  /// How well it mixes after the current track, 0 to 100 after validation.
  std::int64_t compatibilityScore = 0;
  std::string explanation;

  bool operator==(const Recommendation&) const = default;
};

void to_json(nlohmann::json& json, const Recommendation& recommendation);
void from_json(const nlohmann::json& json, Recommendation& recommendation);

} // namespace velmor
