#pragma once

#include "crate/ranking/CrateRanking.h"

#include <string>

namespace velmor {

/// Why a track was suggested, as one plain sentence of facts: "+1.6 % to match, 8A → 9A one step
/// up, house like this one, you played it after this track on 3 October." Any thread.
[[nodiscard]] std::string reasonFor(const CrateSuggestion& suggestion, const CrateWish& wish);

} // namespace velmor
