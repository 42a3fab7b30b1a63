#pragma once

#include "base/Database.h"
#include "crate/tracks/CrateTrack.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace velmor {

/// What the tags of music files said, so that they need not be read again. Everything in it can be
/// made anew: failures cost time, nothing else. One thread.
class TagCache {
public:
  /// Opens the file, making it and its folder when they are missing, and takes what it has of the
  /// files below the folder.
  TagCache(const std::filesystem::path& file, const std::filesystem::path& folder);

  /// The track without identity, when the file has not been written since.
  [[nodiscard]] std::optional<CrateTrack> find(const std::string& path, std::int64_t modified,
                                               std::int64_t size);
  void put(const CrateTrack& track, std::int64_t modified, std::int64_t size);

  /// What becomes of files that were neither found nor put.
  enum class Rest { isGone, stays };

  /// Stores what was put, and drops files that are gone.
  void store(Rest rest);

private:
  struct Entry {
    std::int64_t modified = 0;
    std::int64_t size = 0;
    CrateTrack track;
    bool isNew = false;
    bool isThere = false;
  };

  void load(const std::string& folder);

  std::optional<Database> database;
  std::unordered_map<std::string, Entry> entries;
};

} // namespace velmor
