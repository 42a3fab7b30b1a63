#include "crate/ranking/CratePoints.h"

#include "crate/tracks/CrateContents.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace velmor {

namespace {

constexpr CrateTime hour = 3600;
constexpr CrateTime day = 24 * hour;
/// A track that was played less long ago was played tonight.
constexpr CrateTime tonight = 10 * hour;
constexpr CrateTime justNow = 2 * hour;
/// A longer list, such as "all of my music", says nothing of what goes together.
constexpr std::size_t longestList = 300;

// The most points for each part, scaled to 100 together.
constexpr double tempoPoints = 35;
constexpr double genrePoints = 25;
constexpr double keyPoints = 20;
constexpr double eraPoints = 8;
constexpr double freshPoints = 8;
constexpr double ratingPoints = 4;
constexpr double energyPoints = 8;
constexpr double listPoints = 6;

// The share of its points that a track gets for what nobody knows of it: neither good nor bad.
constexpr double unknownTempo = 0.35;
constexpr double unknownGenre = 0.3;
constexpr double unknownKey = 0.4;
constexpr double unknownEra = 0.5;
constexpr double unknownRating = 0.5;
constexpr double unknownEnergy = 0.5;

/// A change of pitch of up to 2 % is not heard, one of 6 % is, and nobody likes 10 %.
double tempoShare(const TempoFit& fit) {
  const double pitch = std::abs(fit.pitch);
  const double share = pitch <= 2   ? 1
                       : pitch <= 6 ? 1 - 0.6 * (pitch - 2) / 4
                                    : std::max(0.0, 0.4 * (10 - pitch) / 4);
  return fit.count == 1 ? share : 0.8 * share;
}

/// The best of mixing it as it is, in half time and in double time.
TempoFit tempoFit(double current, double tempo, double tolerance) {
  std::optional<TempoFit> best;
  for (const double count : {1.0, 2.0, 0.5}) {
    const double counted = tempo * count;
    const TempoFit fit{(current / counted - 1) * 100, count,
                       std::abs(counted - current) <= tolerance};
    const auto quality = [](const TempoFit& one) {
      return std::pair(one.isInTolerance, tempoShare(one));
    };
    if (!best || quality(fit) > quality(*best)) best = fit;
  }
  return *best;
}

double keyShare(KeyRelation relation) {
  switch (relation) {
  case KeyRelation::same:
    return 1;
  case KeyRelation::stepUp:
  case KeyRelation::stepDown:
    return 0.9;
  case KeyRelation::relative:
    return 0.85;
  case KeyRelation::diagonal:
    return 0.6;
  case KeyRelation::twoUp:
    return 0.5;
  case KeyRelation::semitoneUp:
    return 0.45;
  case KeyRelation::twoDown:
    return 0.4;
  case KeyRelation::unrelated:
    return 0;
  }
  return 0;
}

/// As strong, or a little stronger: a set climbs in small steps and falls in smaller ones.
double energyShare(int current, int energy) {
  constexpr std::array<double, 7> shares{0.1, 0.4, 0.8, 1, 1, 0.7, 0.3};
  const int difference = energy - current;
  return std::abs(difference) > 3 ? 0 : shares.at(static_cast<std::size_t>(difference + 3));
}

double eraShare(int current, int year) {
  return std::max(0.0, 1 - std::abs(current - year) / 15.0);
}

/// Grows back within four weeks of the last time.
double freshShare(CrateTime lastPlayed, CrateTime now) {
  if (lastPlayed == 0) return 1;
  return std::clamp(static_cast<double>(now - lastPlayed) / static_cast<double>(28 * day), 0.0,
                    1.0);
}

} // namespace

CrateJudge::CrateJudge(const CrateContents& contents, const CrateWish& theWish)
    : wish(theWish), genres(theWish.current.genre) {
  artistsJustPlayed.insert(wish.current.artistIdentity);
  for (const auto& list : contents.lists) {
    const bool isIn = list.tracks.size() <= longestList &&
                      std::ranges::find(list.tracks, wish.current.identity) != list.tracks.end();
    if (!isIn) continue;
    for (const auto track : list.tracks)
      companions.emplace(track, &list);
  }
  for (const auto& night : contents.nights) {
    for (std::size_t index = 0; index < night.size(); ++index) {
      const auto& play = night[index];
      if (index > 0 && night[index - 1].identity == wish.current.identity) {
        auto& last = followers[play.identity];
        last = std::max(last, play.when);
      }
      const auto* const track =
          wish.now - play.when < justNow ? contents.find(play.identity) : nullptr;
      if (track) artistsJustPlayed.insert(track->artistIdentity);
    }
  }
}

CratePoints CrateJudge::points(const CrateTrack& track) {
  const auto& current = wish.current;
  CratePoints result;
  double reached = 0;
  double possible = 0;
  const auto add = [&](double most, double share) {
    reached += most * share;
    possible += most;
  };

  // What nobody knows of the playing track is left out: the rest decides.
  if (current.bpm > 0) {
    if (track.bpm > 0) result.tempo = tempoFit(current.bpm, track.bpm, wish.bpmTolerance);
    add(tempoPoints, result.tempo ? tempoShare(*result.tempo) : unknownTempo);
  }
  if (!current.genre.empty()) {
    if (!track.genre.empty()) result.genre = genres.to(track.genre);
    add(genrePoints, result.genre.value_or(unknownGenre));
  }
  if (current.key && wish.keys) {
    add(keyPoints, track.key ? keyShare(keyRelation(*current.key, *track.key)) : unknownKey);
  }
  if (current.energy > 0) {
    add(energyPoints, track.energy > 0 ? energyShare(current.energy, track.energy) : unknownEnergy);
  }
  if (current.year > 0) {
    add(eraPoints, track.year > 0 ? eraShare(current.year, track.year) : unknownEra);
  }
  if (!companions.empty()) {
    const auto companion = companions.find(track.identity);
    if (companion != companions.end()) result.list = companion->second;
    add(listPoints, result.list ? 1 : 0);
  }
  const bool isArtistAgain = artistsJustPlayed.contains(track.artistIdentity);
  add(freshPoints, isArtistAgain ? 0 : freshShare(track.lastPlayed, wish.now));
  add(ratingPoints, track.rating > 0 ? (track.rating - 1) / 4.0 : unknownRating);
  result.total = 100 * reached / possible;

  // A pair that the DJ has played before is known to work: most of what is missing to 100.
  const auto follower = followers.find(track.identity);
  if (follower != followers.end()) {
    result.followed = follower->second;
    result.total += (100 - result.total) * 3 / 4;
  }
  // Hardly anybody wants to hear a track twice in one night.
  if (track.lastPlayed > 0 && wish.now - track.lastPlayed < tonight) result.total /= 2;
  return result;
}

} // namespace velmor
