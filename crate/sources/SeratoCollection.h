#pragma once

#include "crate/sources/ReadingProgress.h"
#include "crate/tracks/CrateTrack.h"

#include <filesystem>

namespace velmor {

/// Serato's "database V2": records of four letters, a length of four bytes with the highest first,
/// and so many bytes; texts are UTF-16 with the higher byte first.
struct SeratoCollection {
  /// True when the file begins as such a file does.
  [[nodiscard]] static bool isOne(const std::filesystem::path& file);

  /// Reads the tracks of the file at `source.place`, as far as it is sound. Any thread; blocks.
  static void read(CrateSource& source, ReadingProgress& progress);
};

} // namespace velmor
