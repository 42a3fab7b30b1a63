#include "model/VisionResult.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const VisionResult& result) {
  json = {
      {"currentTrack", result.currentTrack},
      {"recommendations", result.recommendations},
      {"source", result.source},
      {"notice", result.notice},
  };
}

void from_json(const nlohmann::json& json, VisionResult& result) {
  const RecordReader members(json);
  result.currentTrack = members.record<TrackMetadata>("currentTrack");
  result.recommendations = members.records<Recommendation>("recommendations");
  result.source = members.text("source");
  result.notice = members.text("notice");
}

} // namespace velmor
