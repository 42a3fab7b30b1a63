#include "ai/AnalysisValidation.h"

#include "base/Text.h"
#include "base/VelmorError.h"
#include "model/CamelotKey.h"

#include <algorithm>

namespace velmor {

namespace {

bool isBlank(const std::string& value) {
  return text::trimmed(value).empty();
}

void validate(Recommendation& recommendation, std::size_t position) {
  recommendation.key = CamelotKey::toCamelot(recommendation.key);
  if (isBlank(recommendation.song) || isBlank(recommendation.artist)) {
    throw VelmorError("recommendation " + std::to_string(position) + " is missing song or artist");
  }
  recommendation.compatibilityScore =
      std::clamp<std::int64_t>(recommendation.compatibilityScore, 0, 100);
}

} // namespace

Analysis validateAnalysis(const Analysis& analysis, std::int64_t expected) {
  if (!analysis.playbackDetected) {
    return {.playbackDetected = false,
            .playbackEvidence = analysis.playbackEvidence,
            .currentTrack = {},
            .recommendations = {}};
  }
  if (isBlank(analysis.playbackEvidence)) {
    throw VelmorError("AI did not provide evidence of active playback");
  }
  if (isBlank(analysis.currentTrack.song) || isBlank(analysis.currentTrack.artist)) {
    throw VelmorError("active playback was reported without a song and artist");
  }
  Analysis valid = analysis;
  valid.currentTrack.key = CamelotKey::toCamelot(analysis.currentTrack.key);
  const auto received = analysis.recommendations.size();
  if (static_cast<std::int64_t>(received) != expected) {
    throw VelmorError("AI returned " + std::to_string(received) + " recommendations; expected " +
                      std::to_string(expected));
  }
  std::size_t position = 0;
  for (auto& recommendation : valid.recommendations)
    validate(recommendation, ++position);
  return valid;
}

} // namespace velmor
