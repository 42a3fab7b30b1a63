#pragma once

#include "crate/sources/ReadingProgress.h"
#include "crate/tracks/CrateTrack.h"

#include <filesystem>
#include <vector>

namespace velmor {

/// A folder with music files and what is in it, at any depth.
class MusicFolder {
public:
  /// Walks through the folder. Hidden files and folders, and folders behind links, stay out. Any
  /// thread; blocks.
  explicit MusicFolder(const std::filesystem::path& folder);

  /// Changes whenever a music file comes, goes or is written.
  [[nodiscard]] std::uintmax_t state() const;

  /// The folder itself and those in it: a music file that comes or changes changes one of them.
  [[nodiscard]] std::vector<std::filesystem::path> folders() const { return walked; }

  /// The tracks, as far as the reading is not stopped. Tags are read from files that are new or
  /// changed, the others come from the cache, an SQLite file that is made when it is missing.
  /// Without a usable cache all are read.
  [[nodiscard]] CrateSource read(const std::filesystem::path& cache,
                                 ReadingProgress& progress) const;

private:
  struct File {
    std::string path;
    /// When it was written, in the file system's own count.
    std::int64_t modified = 0;
    std::int64_t size = 0;
  };

  std::filesystem::path folder;
  std::vector<std::filesystem::path> walked;
  std::vector<File> files;
};

} // namespace velmor
