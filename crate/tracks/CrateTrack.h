#pragma once

#include "crate/tracks/MusicalKey.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// Seconds since 1970; 0 when unknown.
using CrateTime = std::int64_t;

/// A track that the DJ has. Unknown texts are "", unknown numbers 0.
struct CrateTrack {
  std::string title;
  std::string artist;
  std::string album;
  std::string genre;
  /// Where it lies on this machine: an absolute path, or as the DJ program wrote it.
  std::string file;
  double bpm = 0;
  std::optional<MusicalKey> key;
  /// 1 (calm) to 10 (wild).
  int energy = 0;
  /// 1 to 5 stars.
  int rating = 0;
  int year = 0;
  /// When it came into the crate.
  CrateTime added = 0;
  /// Equal for all spellings of the same recording (TrackIdentity.h).
  std::uint64_t identity = 0;
  /// Equal for all lengths of the same recording too, such as its extended mix and its radio edit.
  std::uint64_t song = 0;
  /// Equal for all spellings of the artist.
  std::uint64_t artistIdentity = 0;
  /// When it was last played, as far as the DJ programs' histories say.
  CrateTime lastPlayed = 0;
};

/// A track that was played.
struct CratePlay {
  std::uint64_t identity = 0;
  CrateTime when = 0;
};

/// What was played in one go, in its order.
using CrateNight = std::vector<CratePlay>;

/// Tracks that the DJ has put together in a DJ program: a crate or a playlist.
struct CrateList {
  std::string name;
  /// The identities of its tracks.
  std::vector<std::uint64_t> tracks;
};

/// Something in a source that could not be read.
struct CrateSkip {
  std::string file;
  /// A few words, without a full stop.
  std::string reason;
};

/// What one source gives.
struct CrateSource {
  /// "Mixxx", say.
  std::string name;
  /// The file or folder that was read.
  std::string place;
  std::vector<CrateTrack> tracks;
  std::vector<CrateNight> nights;
  std::vector<CrateList> lists;
  std::vector<CrateSkip> skipped;
};

} // namespace velmor
