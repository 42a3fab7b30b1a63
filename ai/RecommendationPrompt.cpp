#include "ai/RecommendationPrompt.h"

#include "base/Number.h"
#include "base/Text.h"

namespace velmor {

std::string RecommendationPrompt::text(const TrackMetadata& current, const std::string& source,
                                       double bpmTolerance, std::int64_t recommendationCount) {
  const auto count = std::to_string(recommendationCount);
  const auto tolerance = std::to_string(static_cast<std::int64_t>(bpmTolerance));
  return velmor::text::joined(
      {
          "The currently playing track was verified through the macOS system media session.",
          "",
          "Current track:",
          "- Song: " + current.song,
          "- Artist: " + current.artist,
          "- Album: " + current.album,
          "- BPM: " + number::formatFixed(current.bpm, 2),
          "- Key: " + current.key,
          "- Genre: " + current.genre,
          "- Energy: " + std::to_string(current.energy) + "/100",
          "- Audio/source notes: " + current.other,
          "- Source application: " + source,
          "",
          "Recommend exactly " + count +
              " real songs for the next DJ mix. Never recommend the current track. Prioritize "
              "similar BPM (normally within +/- " +
              tolerance +
              " BPM unless half/double time is appropriate), compatible Camelot key, related "
              "genre and mood, suitable energy progression, phrasing, and overall set flow. Do not "
              "invent facts about the current track when a field is empty or zero.",
          "",
          "Submit playbackDetected=true, playbackEvidence=\"macOS system media session reports "
          "Playing\", the supplied current track, and exactly " +
              count + " ranked recommendations through the required tool.",
      },
      "\n");
}

} // namespace velmor
