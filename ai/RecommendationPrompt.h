#pragma once

#include "model/Records.h"

#include <cstdint>
#include <string>

namespace velmor {

/// The question to the model, in words. Stateless; any thread.
struct RecommendationPrompt {
  /// The system text, the same for every request.
  static constexpr auto system =
      "You are an expert DJ and music-metadata analyst. Always finish by calling the required "
      "result tool.";

  /// The user's text. `source` is the name of the application that plays; the tolerance is cut to
  /// whole BPM. An unknown tempo or energy is written as 0, an unknown text as nothing.
  [[nodiscard]] static std::string text(const TrackMetadata& current, const std::string& source,
                                        double bpmTolerance, std::int64_t recommendationCount);
};

} // namespace velmor
