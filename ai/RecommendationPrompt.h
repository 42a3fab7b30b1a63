#pragma once

#include "model/Records.h"

#include <cstdint>
#include <string>

namespace velmor {

/// What is asked of the model, in words.
struct RecommendationPrompt {
  /// The system text, the same for every request.
  static constexpr auto system =
      "You are an expert DJ and music-metadata analyst. Always finish by calling the required "
      "result tool.";

  /// The user prompt. `source` is the name of the application that plays; the tolerance is named
  /// in whole BPM.
  [[nodiscard]] static std::string text(const TrackMetadata& current, const std::string& source,
                                        double bpmTolerance, std::int64_t recommendationCount);
};

} // namespace velmor
