#pragma once

#include "crate/CrateContents.h"
#include "platform/Platform.h"
#include "platform/async/Task.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace velmor {

/// Where the DJ's music is described.
struct CratePlaces {
  /// Mixxx's libraries, the preferred one first.
  std::vector<std::filesystem::path> mixxxLibraries;
  /// Folders with tagged music files.
  std::vector<std::filesystem::path> musicFolders;
  /// Where the files' tags are kept between runs.
  std::filesystem::path tagCache;

  bool operator==(const CratePlaces&) const = default;
};

/// The DJ's own music on this machine, read when somebody asks for it and again when a source has
/// changed. Nothing is written beside the sources. Main thread.
class Crate {
public:
  /// `findPlaces` is called before each reading, on a worker thread.
  Crate(MainLoop& loop, std::function<CratePlaces()> findPlaces);

  using Contents = std::shared_ptr<const CrateContents>;

  /// All that the sources have now. Never null. The reading runs on a worker thread.
  [[nodiscard]] Task<Contents> contents();

private:
  /// The state of a source's file or folder, which changes whenever its content does.
  struct Stamp {
    std::filesystem::path place;
    std::filesystem::file_time_type modified;
    /// The size of a file; MusicFolder::state() of a folder.
    std::uintmax_t state = 0;

    bool operator==(const Stamp&) const = default;
  };
  struct Reading {
    std::vector<Stamp> stamps;
    Contents contents;
  };

  [[nodiscard]] static Stamp stampOf(const std::filesystem::path& file);
  [[nodiscard]] static Reading read(const CratePlaces& places, const Reading& last);

  MainLoop& loop;
  const std::function<CratePlaces()> findPlaces;
  Reading last;
};

} // namespace velmor
