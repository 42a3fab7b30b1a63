#pragma once

#include "crate/tracks/CrateTrack.h"

#include <filesystem>

namespace velmor {

/// The tracks of Mixxx's library, and what was played in Mixxx.
struct MixxxCrate {
  /// Reads the whole library: tracks that are hidden or whose files are gone stay out. Mixxx fails
  /// while somebody reads, so the reading is short, and nothing is ever written. A library that
  /// cannot be read is named in `skipped`. Any thread; blocks.
  [[nodiscard]] static CrateSource read(const std::filesystem::path& database);
};

} // namespace velmor
