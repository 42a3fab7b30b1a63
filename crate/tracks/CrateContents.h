#pragma once

#include "crate/tracks/CrateTrack.h"

#include <deque>
#include <memory>
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
  using Sources = std::vector<std::shared_ptr<const CrateSource>>;

  CrateContents() = default;
  CrateContents(CrateContents&&) = default;
  CrateContents& operator=(CrateContents&&) = default;

  std::vector<Source> sources;
  /// In the order of their identity, which is the same however the sources are ordered. They live
  /// as long as the contents do.
  std::vector<const CrateTrack*> tracks;
  std::vector<CrateNight> nights;
  std::vector<CrateList> lists;
  std::vector<CrateSkip> skipped;

  /// Joins what several sources say of the same track: a value comes from the first source that
  /// knows it. Tracks without an artist or a title are left out, and counted in `skipped`. What
  /// one source alone says is not copied.
  [[nodiscard]] static CrateContents joined(Sources sources);

  /// "Your crate: 4,212 tracks" or "No music found for your crate".
  [[nodiscard]] std::string status() const;

  [[nodiscard]] std::size_t withoutTempo() const;
  [[nodiscard]] std::size_t withoutKey() const;

  /// Null when the crate has no such track.
  [[nodiscard]] const CrateTrack* find(std::uint64_t identity) const;
  [[nodiscard]] const CrateTrack* find(std::string_view artist, std::string_view title) const;

private:
  void noteLastPlayed();

  /// The owners of what `tracks` names, and the tracks that no source has in this form.
  Sources owners;
  std::deque<CrateTrack> own;
};

} // namespace velmor
