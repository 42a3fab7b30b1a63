#pragma once

#include "crate/sources/ReadingProgress.h"
#include "crate/tracks/CrateTrack.h"

#include <filesystem>

namespace velmor {

/// A file in which a DJ program keeps or exports what it knows of the DJ's music: rekordbox's XML
/// export, Traktor's NML, VirtualDJ's database.xml, Serato's "database V2".
struct CollectionFile {
  /// The tracks of the file, which tells by its content what it is. A file that is damaged or not
  /// wholly written gives what stands before the fault, and is named in `skipped`. Never more than
  /// one entry of the file is held beside the tracks. Any thread; blocks.
  [[nodiscard]] static CrateSource read(const std::filesystem::path& file,
                                        ReadingProgress& progress);
};

} // namespace velmor
