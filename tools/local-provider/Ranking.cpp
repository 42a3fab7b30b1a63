#include "Ranking.h"

#include "Comparison.h"
#include "Explanation.h"
#include "Text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <string>

namespace velmor::tools {
namespace {

constexpr double tempoWeight = 0.4;
constexpr double keyWeight = 0.3;
constexpr double genreWeight = 0.2;
constexpr double energyWeight = 0.1;
// What is unknown counts alike for every song: it moves none, but keeps the scores modest.
constexpr double unknownDistance = 0.5;
// A set should rise gently.
constexpr int wantedRise = 3;
constexpr double widestRise = 40;

struct Candidate {
  const Song* song = nullptr;
  Comparison comparison;
};

double energyDistance(int rise) {
  return std::min(1.0, std::abs(rise - wantedRise) / widestRise);
}

double totalDistance(const Comparison& parts, int tolerance) {
  const bool keys = parts.currentKey && parts.songKey;
  const bool genres = parts.currentGenre && parts.songGenre;
  return tempoWeight * (parts.tempo ? parts.tempo->distance(tolerance) : unknownDistance) +
         keyWeight * (keys ? parts.currentKey->distanceTo(*parts.songKey) : unknownDistance) +
         genreWeight *
             (genres ? parts.currentGenre->distanceTo(*parts.songGenre) : unknownDistance) +
         energyWeight * (parts.energyRise ? energyDistance(*parts.energyRise) : unknownDistance);
}

Comparison compare(const PromptFacts& facts, const Song& song) {
  Comparison parts;
  if (facts.bpm > 0) parts.tempo = Tempo::match(facts.bpm, song.bpm);
  parts.currentKey = CamelotCode::read(trimmed(facts.key));
  parts.songKey = CamelotCode::read(song.key);
  parts.currentGenre = Genre::read(facts.genre);
  parts.songGenre = Genre::read(song.genre);
  if (facts.energy > 0) parts.energyRise = song.energy - facts.energy;
  parts.distance = totalDistance(parts, facts.tolerance);
  return parts;
}

std::vector<Candidate> candidates(const PromptFacts& facts, const std::vector<Song>& songs) {
  // The title alone decides: an artist may be written in many ways ("feat.", "&", "vs").
  const auto current = foldedBaseTitle(facts.song);
  std::vector<Candidate> found;
  for (const auto& song : songs)
    if (foldedBaseTitle(song.song) != current) found.push_back({&song, compare(facts, song)});
  std::ranges::stable_sort(found, {}, [](const Candidate& one) { return one.comparison.distance; });
  return found;
}

} // namespace

std::vector<RankedSong> Ranking::of(const PromptFacts& facts, const std::vector<Song>& songs) {
  const auto wanted = static_cast<size_t>(std::max(facts.count, 0));
  std::vector<RankedSong> ranking;
  std::set<std::string> artists;
  for (const auto& [song, comparison] : candidates(facts, songs)) {
    if (ranking.size() == wanted) break;
    if (!artists.insert(folded(song->artist)).second) continue;
    const auto score = static_cast<int>(std::lround(100 * (1 - comparison.distance)));
    ranking.push_back({*song, score, Explanation::of(comparison)});
  }
  return ranking;
}

} // namespace velmor::tools
