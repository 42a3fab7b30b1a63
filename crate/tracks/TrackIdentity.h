#pragma once

#include "crate/tracks/CrateTrack.h"

#include <string_view>

namespace velmor {

/// Tells whether two names mean the same recording. Case, accents, punctuation, brackets, guests
/// ("feat. X"), the order of several artists and "Original Mix" make no difference; a remix is
/// another recording. Any thread.
struct TrackIdentity {
  /// Equal for names of the same recording.
  std::uint64_t identity = 0;
  /// Equal for its extended, radio and club versions too.
  std::uint64_t song = 0;
  /// Equal for all spellings of the artist.
  std::uint64_t artist = 0;

  [[nodiscard]] static TrackIdentity of(std::string_view artist, std::string_view title);

  /// Puts the identity into the track. A track without an artist whose title is "Artist - Title",
  /// as files without tags have it, gets both from there.
  static void complete(CrateTrack& track);
};

} // namespace velmor
