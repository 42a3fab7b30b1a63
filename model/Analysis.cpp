#include "model/Analysis.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const Analysis& analysis) {
  json = {
      {"playbackDetected", analysis.playbackDetected},
      {"playbackEvidence", analysis.playbackEvidence},
      {"currentTrack", analysis.currentTrack},
      {"recommendations", analysis.recommendations},
  };
}

void from_json(const nlohmann::json& json, Analysis& analysis) {
  const RecordReader members(json);
  analysis.playbackDetected = members.boolean("playbackDetected");
  analysis.playbackEvidence = members.text("playbackEvidence");
  analysis.currentTrack = members.record<TrackMetadata>("currentTrack");
  analysis.recommendations = members.records<Recommendation>("recommendations");
}

} // namespace velmor
