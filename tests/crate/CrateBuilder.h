#pragma once

#include "crate/tracks/CrateContents.h"
#include "crate/tracks/TrackIdentity.h"

#include <string>
#include <utility>
#include <vector>

namespace velmor {

/// 3 October 2026, 22:00 UTC.
inline constexpr CrateTime tonight = 1'791'064'800;

inline CrateTrack track(const std::string& artist, const std::string& title, double bpm = 0,
                        const char* key = "", const std::string& genre = "", int year = 0) {
  CrateTrack made{.title = title, .artist = artist, .genre = genre, .file = "/" + title};
  made.bpm = bpm;
  made.key = MusicalKey::read(key);
  made.year = year;
  TrackIdentity::complete(made);
  return made;
}

inline CratePlay played(const CrateTrack& track, CrateTime when) {
  return {track.identity, when};
}

inline std::shared_ptr<const CrateSource> source(CrateSource made) {
  return std::make_shared<const CrateSource>(std::move(made));
}

inline CrateContents crateOf(std::vector<CrateTrack> tracks, std::vector<CrateNight> nights = {}) {
  return CrateContents::joined(
      {source({.name = "Test", .tracks = std::move(tracks), .nights = std::move(nights)})});
}

} // namespace velmor
