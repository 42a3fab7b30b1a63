#pragma once

#include "model/Records.h"

#include <optional>
#include <string>

namespace velmor {

/// What one look at the sources gave.
struct TrackLook {
  std::optional<NowPlayingTrack> track;
  /// What the user has to allow before rekordbox's window can be read; "" for nothing.
  std::string deniedAccess;
};

/// "" for a track without title or artist; else the same for every spelling that differs only in
/// letter case, blanks around it or the way accents are stored. Any thread.
[[nodiscard]] std::string trackFingerprint(const NowPlayingTrack& track);

/// Makes changes out of looks: the same track twice is none, and one look without a track is no
/// stop, since sources miss one now and then. One thread.
class TrackChanges {
public:
  static constexpr int missesUntilStopped = 2;

  TrackChanges() = default;
  /// Goes on from what is known already.
  explicit TrackChanges(const std::optional<NowPlayingTrack>& known)
      : last(known ? trackFingerprint(*known) : "") {}

  enum class News { none, changed, stopped };

  /// What this look, the next after the last one, tells.
  [[nodiscard]] News take(const TrackLook& look);

private:
  std::string last;
  int misses = 0;
};

} // namespace velmor
