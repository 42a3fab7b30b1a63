#include "analysis/ExtractorReport.h"
#include "base/Json.h"
#include "tests/fuzz/FuzzTarget.h"

#include <cmath>

using namespace velmor;

/// The input is an extractor's report.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto features = ExtractorReport::features(fuzz::text(data, size));
    fuzz::require(std::isfinite(features.bpm) && std::isfinite(features.loudness));
  } catch (const DecodingError&) {
    return 0;
  }
  return 0;
}
