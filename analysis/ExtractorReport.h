#pragma once

#include "analysis/AudioAnalysisService.h"

#include <string_view>

namespace velmor {

/// The extractor's JSON report.
struct ExtractorReport {
  /// The four figures; what is missing or of another type stays at its default. Throws
  /// DecodingError when the report is not JSON.
  [[nodiscard]] static AudioAnalysisService::Features features(std::string_view report);
};

} // namespace velmor
