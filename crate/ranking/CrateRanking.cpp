#include "crate/ranking/CrateRanking.h"

#include "crate/tracks/CrateContents.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace velmor {

namespace {

constexpr std::size_t mostOfArtist = 2;

double distance(const CrateSuggestion& suggestion) {
  const auto& tempo = suggestion.points.tempo;
  return tempo ? std::abs(tempo->pitch) : std::numeric_limits<double>::max();
}

/// The better first. Equal points go to the nearer tempo, the higher rating, the newer track; the
/// identity makes the order the same every time.
bool isBetter(const CrateSuggestion& one, const CrateSuggestion& other) {
  if (one.points.total != other.points.total) return one.points.total > other.points.total;
  const auto rest = [](const CrateSuggestion& suggestion) {
    const auto& track = *suggestion.track;
    return std::tuple(distance(suggestion), -track.rating, -track.added, track.identity);
  };
  return rest(one) < rest(other);
}

/// All tracks with their points. They are put in order as far as somebody looks: of a large crate
/// hardly anything is wanted.
class Ranked {
public:
  explicit Ranked(std::vector<CrateSuggestion> given) : all(std::move(given)) {}

  [[nodiscard]] std::size_t size() const { return all.size(); }

  /// The one at this place; the best is at 0.
  [[nodiscard]] const CrateSuggestion& at(std::size_t place) {
    while (place >= sorted) {
      const auto begin = all.begin() + static_cast<std::ptrdiff_t>(sorted);
      sorted = std::min(all.size(), std::max<std::size_t>(64, 8 * sorted));
      std::partial_sort(begin, all.begin() + static_cast<std::ptrdiff_t>(sorted), all.end(),
                        isBetter);
    }
    return all[place];
  }

private:
  std::vector<CrateSuggestion> all;
  std::size_t sorted = 0;
};

std::vector<CrateSuggestion> judged(const CrateContents& contents, const CrateWish& wish) {
  CrateJudge judge(contents, wish);
  std::vector<CrateSuggestion> all;
  all.reserve(contents.tracks.size());
  for (const auto* const track : contents.tracks) {
    if (track->song == wish.current.song) continue;
    auto& suggestion = all.emplace_back(CrateSuggestion{track, judge.points(*track)});
    const auto& tempo = suggestion.points.tempo;
    suggestion.isOutOfTolerance = tempo && !tempo->isInTolerance;
  }
  return all;
}

/// The chosen suggestions, which take care that no song and no artist comes too often.
class Choice {
public:
  explicit Choice(std::size_t count) : wanted(count) {}

  /// Adds those of the ranked ones that may be added, in their order, until there are enough.
  void fill(Ranked& ranked, bool anyTempo, std::size_t ofOneArtist) {
    for (std::size_t place = 0; place < ranked.size() && chosen.size() < wanted; ++place) {
      const auto& suggestion = ranked.at(place);
      const auto& track = *suggestion.track;
      if (suggestion.isOutOfTolerance && !anyTempo) continue;
      if (songs.contains(track.song)) continue;
      auto& ofArtist = artists[track.artistIdentity];
      if (ofArtist >= ofOneArtist) continue;
      ++ofArtist;
      songs.insert(track.song);
      chosen.push_back(suggestion);
      chosen.back().isThirdOfArtist = ofArtist > mostOfArtist;
    }
  }

  std::vector<CrateSuggestion> chosen;

private:
  const std::size_t wanted;
  std::unordered_set<std::uint64_t> songs;
  std::unordered_map<std::uint64_t, std::size_t> artists;
};

} // namespace

std::vector<CrateSuggestion> rankCrate(const CrateContents& contents, const CrateWish& wish) {
  Ranked ranked(judged(contents, wish));
  Choice choice(wish.count);
  choice.fill(ranked, false, 1);
  choice.fill(ranked, false, mostOfArtist);
  std::ranges::sort(choice.chosen, isBetter);
  choice.fill(ranked, true, mostOfArtist);
  choice.fill(ranked, true, std::numeric_limits<std::size_t>::max());
  return std::move(choice.chosen);
}

} // namespace velmor
