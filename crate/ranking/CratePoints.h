#pragma once

#include "crate/ranking/GenreLikeness.h"
#include "crate/tracks/CrateTrack.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace velmor {

struct CrateContents;

/// What is wanted from the crate.
struct CrateWish {
  /// What plays now; what is not known of it doesn't count.
  CrateTrack current;
  /// How far the tempo may be from the current one, in BPM.
  double bpmTolerance = 0;
  std::size_t count = 0;
  CrateTime now = 0;
  /// Keys count; else they give no points and are not spoken of.
  bool keys = true;
};

/// How the tempo of a track is brought to that of the playing one.
struct TempoFit {
  /// The change of its pitch, in percent: 1.6 plays it faster.
  double pitch = 0;
  /// Its beats are counted once (1), twice (2) or every other one (0.5).
  double count = 1;
  /// Its tempo lies within the tolerance.
  bool isInTolerance = true;
};

/// How well a track follows the playing one: points, and the facts that they come from.
struct CratePoints {
  /// 0 to 100.
  double total = 0;
  /// Nothing when one of the two tempos is unknown.
  std::optional<TempoFit> tempo;
  /// 0 to 1; nothing when one of the two genres is unknown.
  std::optional<double> genre;
  /// A crate or playlist that has both tracks; null when there is none.
  const CrateList* list = nullptr;
  /// When the DJ last played it right after the playing track; 0 for never.
  CrateTime followed = 0;
};

/// Gives each track its points, always the same for the same wish. One thread.
class CrateJudge {
public:
  /// Both must live longer than the judge.
  CrateJudge(const CrateContents& contents, const CrateWish& wish);

  [[nodiscard]] CratePoints points(const CrateTrack& track);

private:
  const CrateWish& wish;
  GenreLikeness genres;
  /// What was played right after the current track, and when last.
  std::unordered_map<std::uint64_t, CrateTime> followers;
  /// Tracks that stand in a crate or playlist together with the current one.
  std::unordered_map<std::uint64_t, const CrateList*> companions;
  /// The current artist and those of the last hours.
  std::unordered_set<std::uint64_t> artistsJustPlayed;
};

} // namespace velmor
