#pragma once

#include "model/Recommendation.h"
#include "model/TrackMetadata.h"

#include <vector>

namespace velmor {

/// The result of one suggestion run, as the page shows it.
struct VisionResult {
  TrackMetadata currentTrack;
  std::vector<Recommendation> recommendations;
  /// How the current track was detected and which provider answered.
  std::string source;
  /// A note for the page.
  std::string notice;

  bool operator==(const VisionResult&) const = default;
};

void to_json(nlohmann::json& json, const VisionResult& result);
void from_json(const nlohmann::json& json, VisionResult& result);

} // namespace velmor
