#pragma once

#include "crate/tracks/CrateContents.h"
#include "model/CrateRecords.h"
#include "model/Records.h"

#include <string_view>

namespace velmor {

/// Suggestions from the crate in the form in which a model answers. Any thread.
struct CrateAnswer {
  /// The track with what the crate knows and the reader did not: tempo, key, album, genre, energy.
  [[nodiscard]] static TrackMetadata completed(TrackMetadata track, const CrateContents& crate);

  /// What to play after the current track, with points and reasons. As many as are wanted, fewer
  /// only when the crate has no more. The tolerance is in BPM; with `keys`, keys count.
  [[nodiscard]] static Analysis after(const TrackMetadata& current, const CrateContents& crate,
                                      double bpmTolerance, std::int64_t count, CrateTime now,
                                      bool keys = true);

  /// The track that the user names as "Artist - Title"; null when the crate has none.
  [[nodiscard]] static const CrateTrack* named(std::string_view name, const CrateContents& crate);

  [[nodiscard]] static TrackMetadata metadata(const CrateTrack& track);

  /// The track as the page sees it. Looks whether its file is there; may block.
  [[nodiscard]] static CrateEntry entry(const CrateTrack& track);
};

} // namespace velmor
