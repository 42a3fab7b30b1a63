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
  /// The state of a source's file, which changes whenever its content does.
  struct Stamp {
    std::filesystem::path file;
    std::filesystem::file_time_type modified;
    std::uintmax_t size = 0;

    bool operator==(const Stamp&) const = default;
  };
  struct Reading {
    std::vector<Stamp> stamps;
    Contents contents;
  };

  [[nodiscard]] static std::vector<Stamp> stampsOf(const CratePlaces& places);
  [[nodiscard]] static Reading read(const CratePlaces& places, const Reading& last);

  MainLoop& loop;
  const std::function<CratePlaces()> findPlaces;
  Reading last;
};

} // namespace velmor
