#pragma once

#include "crate/sources/ReadingProgress.h"
#include "crate/tracks/CrateContents.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace velmor {

/// Where the DJ's music is described.
struct CratePlaces {
  /// Mixxx's libraries, the preferred one first.
  std::vector<std::filesystem::path> mixxxLibraries;
  /// Files in which other DJ programs keep or export their collections.
  std::vector<std::filesystem::path> collections;
  /// Folders with tagged music files.
  std::vector<std::filesystem::path> musicFolders;
  /// Where the files' tags are kept between runs.
  std::filesystem::path tagCache;

  /// The files among them.
  [[nodiscard]] std::vector<std::filesystem::path> files() const;
};

/// All sources as they were at one time.
struct CrateReading {
  /// The state of a source's file or folder, which changes whenever its content does.
  struct Stamp {
    std::filesystem::path place;
    std::filesystem::file_time_type modified;
    /// The size of a file; MusicFolder::state() of a folder.
    std::uintmax_t state = 0;

    bool operator==(const Stamp&) const = default;
  };
  struct Part {
    Stamp stamp;
    std::shared_ptr<const CrateSource> source;
  };

  std::vector<Part> parts;
  /// Null before the first reading.
  std::shared_ptr<const CrateContents> contents;

  /// Reads the sources that have changed since the last reading, and takes the others from it.
  /// Contents are the same object when nothing has changed. A worker thread; blocks.
  [[nodiscard]] static CrateReading after(const CrateReading& last, const CratePlaces& places,
                                          ReadingProgress& progress);
};

} // namespace velmor
