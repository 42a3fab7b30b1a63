#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>

namespace velmor {

/// A track as the page and the model see it.
struct TrackMetadata {
  std::string song;
  std::string artist;
  std::string album;
  /// Beats per minute; 0 when unknown.
  double bpm = 0;
  /// In Camelot notation after validation; "" when unknown.
  std::string key;
  std::string genre;
  /// 0 to 100; 0 when unknown.
  std::int64_t energy = 0;
  /// Free notes on the source and the sound.
  std::string other;
  /// 0 to 100.
  std::int64_t confidence = 0;

  bool operator==(const TrackMetadata&) const = default;
};

void to_json(nlohmann::json& json, const TrackMetadata& track);
void from_json(const nlohmann::json& json, TrackMetadata& track);

} // namespace velmor
