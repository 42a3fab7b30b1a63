#pragma once

#include "model/Recommendation.h"
#include "model/TrackMetadata.h"

#include <vector>

namespace velmor {

/// The model's answer.
struct Analysis {
  bool playbackDetected = false;
  /// What confirms that something plays.
  std::string playbackEvidence;
  TrackMetadata currentTrack;
  /// Empty when nothing plays.
  std::vector<Recommendation> recommendations;

  bool operator==(const Analysis&) const = default;
};

void to_json(nlohmann::json& json, const Analysis& analysis);
void from_json(const nlohmann::json& json, Analysis& analysis);

} // namespace velmor
