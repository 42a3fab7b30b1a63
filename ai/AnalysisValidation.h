#pragma once

#include "model/Records.h"

#include <cstdint>

namespace velmor {

/// Checks what a model answered and brings it into its final form: keys in Camelot notation, scores
/// within 0 to 100. Throws VelmorError. Validating the result again changes nothing.
[[nodiscard]] Analysis validateAnalysis(const Analysis& analysis, std::int64_t expected);

} // namespace velmor
