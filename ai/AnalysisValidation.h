#pragma once

#include "model/Records.h"

#include <cstdint>

namespace velmor {

/// Checks a model's answer and brings it into its final form: keys in Camelot notation, scores from
/// 0 to 100. An answer without playback loses track and recommendations. `expected` is the number
/// of recommendations wanted. Throws VelmorError with a sentence for the user. Checking the result
/// again changes nothing. Any thread.
[[nodiscard]] Analysis validateAnalysis(const Analysis& analysis, std::int64_t expected);

} // namespace velmor
