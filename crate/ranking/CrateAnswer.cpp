#include "crate/ranking/CrateAnswer.h"

#include "base/Text.h"
#include "crate/ranking/CrateRanking.h"
#include "crate/ranking/CrateReasons.h"
#include "crate/tracks/CrateDates.h"
#include "crate/tracks/FileAddress.h"
#include "crate/tracks/TrackIdentity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

namespace velmor {

namespace {

/// The page's energies go to 100, the tags' to 10.
constexpr int energyScale = 10;

CrateTrack wanted(const TrackMetadata& current, const CrateContents& crate) {
  CrateTrack track{.title = current.song, .artist = current.artist, .genre = current.genre};
  track.bpm = current.bpm;
  track.key = MusicalKey::read(current.key);
  track.energy = static_cast<int>(std::clamp<std::int64_t>(current.energy, 0, 100)) / energyScale;
  TrackIdentity::complete(track);
  if (const auto* const known = crate.find(track.identity)) track.year = known->year;
  return track;
}

std::string textOf(const std::optional<MusicalKey>& key) {
  return key ? key->text() : "";
}

} // namespace

TrackMetadata CrateAnswer::completed(TrackMetadata track, const CrateContents& crate) {
  const auto* const entry = crate.find(track.artist, track.song);
  if (!entry) return track;
  const auto known = metadata(*entry);
  if (track.album.empty()) track.album = known.album;
  if (track.genre.empty()) track.genre = known.genre;
  if (track.bpm <= 0) track.bpm = known.bpm;
  if (track.key.empty()) track.key = known.key;
  if (track.energy <= 0) track.energy = known.energy;
  return track;
}

Analysis CrateAnswer::after(const TrackMetadata& current, const CrateContents& crate,
                            double bpmTolerance, std::int64_t count, CrateTime now, bool keys) {
  const CrateWish wish{.current = wanted(current, crate),
                       .bpmTolerance = bpmTolerance,
                       .count = static_cast<std::size_t>(count),
                       .now = now,
                       .keys = keys};
  Analysis analysis{.playbackDetected = true,
                    .playbackEvidence = "The track is known to Velmor itself.",
                    .currentTrack = current};
  for (const auto& suggestion : rankCrate(crate, wish)) {
    const auto track = metadata(*suggestion.track);
    analysis.recommendations.push_back({.song = track.song,
                                        .artist = track.artist,
                                        .album = track.album,
                                        .bpm = track.bpm,
                                        .key = track.key,
                                        .genre = track.genre,
                                        .energy = track.energy,
                                        .compatibilityScore = std::llround(suggestion.points.total),
                                        .explanation = reasonFor(suggestion, wish)});
  }
  return analysis;
}

const CrateTrack* CrateAnswer::named(std::string_view name, const CrateContents& crate) {
  // Artists and titles may themselves have a dash in them: every one may be the right one.
  constexpr std::array<std::string_view, 2> separators{" - ", " – "};
  for (const auto separator : separators) {
    for (auto position = name.find(separator); position != std::string_view::npos;
         position = name.find(separator, position + 1)) {
      const auto artist = text::trimmed(name.substr(0, position));
      const auto title = text::trimmed(name.substr(position + separator.size()));
      if (const auto* const track = crate.find(artist, title)) return track;
    }
  }
  return nullptr;
}

TrackMetadata CrateAnswer::metadata(const CrateTrack& track) {
  return {.song = track.title,
          .artist = track.artist,
          .album = track.album,
          .bpm = track.bpm,
          .key = textOf(track.key),
          .genre = track.genre,
          .energy = track.energy * energyScale,
          .other = "From your crate",
          .confidence = 100};
}

CrateEntry CrateAnswer::entry(const CrateTrack& track) {
  std::error_code unreadable;
  const bool isThere = std::filesystem::is_regular_file(track.file, unreadable);
  return {.song = track.title,
          .artist = track.artist,
          .bpm = track.bpm,
          .key = textOf(track.key),
          .genre = track.genre,
          .uri = isThere ? FileAddress::of(track.file) : "",
          .lastPlayed = CrateDates::isoDay(track.lastPlayed)};
}

} // namespace velmor
