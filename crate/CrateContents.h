#pragma once

#include "crate/CrateTrack.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// Everything that the DJ has, from all sources, each track once. Does not change once it is made,
/// so that any thread may read it.
struct CrateContents {
  /// A source, and how much came from it.
  struct Source {
    std::string name;
    std::string place;
    std::size_t tracks = 0;
  };

  std::vector<Source> sources;
  /// In the order of their identity, which is the same however the sources are ordered.
  std::vector<CrateTrack> tracks;
  std::vector<CrateNight> nights;
  std::vector<CrateSkip> skipped;

  /// Joins what several sources say of the same track: a value comes from the first source that
  /// knows it. Tracks without an artist or a title are left out, and counted in `skipped`.
  [[nodiscard]] static CrateContents joined(std::vector<CrateSource> sources);

  /// "Your crate: 4,212 tracks" or "No music found for your crate".
  [[nodiscard]] std::string status() const;

  /// Null when the crate has no such track.
  [[nodiscard]] const CrateTrack* find(std::uint64_t identity) const;
  [[nodiscard]] const CrateTrack* find(std::string_view artist, std::string_view title) const;
};

} // namespace velmor
