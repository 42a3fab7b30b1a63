#include "crate/ranking/CrateReasons.h"

#include "base/Number.h"
#include "base/Text.h"
#include "crate/tracks/CrateDates.h"

#include <cmath>
#include <vector>

namespace velmor {

namespace {

/// Smaller changes are shown as none.
constexpr double noticeable = 0.05;
constexpr CrateTime hour = 3600;

std::string signedPercent(double percent) {
  return (percent < 0 ? "−" : "+") + number::formatFixed(std::abs(percent), 1) + " %";
}

std::string tempoFact(const TempoFit& fit) {
  const auto match = std::abs(fit.pitch) < noticeable ? std::string("same tempo")
                                                      : signedPercent(fit.pitch) + " to match";
  if (fit.count == 1) return match;
  return match + (fit.count == 2 ? " in double time" : " in half time");
}

const char* nameOf(KeyRelation relation) {
  switch (relation) {
  case KeyRelation::same:
    return "the same key";
  case KeyRelation::stepUp:
    return "one step up";
  case KeyRelation::stepDown:
    return "one step down";
  case KeyRelation::relative:
    return "relative key";
  case KeyRelation::diagonal:
    return "diagonal";
  case KeyRelation::twoUp:
    return "two steps up";
  case KeyRelation::twoDown:
    return "two steps down";
  case KeyRelation::semitoneUp:
    return "a semitone up";
  case KeyRelation::unrelated:
    return "the keys don't match";
  }
  return "";
}

/// Without key lock the pitch moves the key too, by a semitone for about 6 %.
std::string keyFact(MusicalKey from, MusicalKey to, double pitch) {
  auto fact = from.text() + " → " + to.text() + " " + nameOf(keyRelation(from, to));
  const int semitones = static_cast<int>(std::lround(12 * std::log2(1 + pitch / 100)));
  if (semitones != 0) fact += " (" + to.shifted(semitones).text() + " without key lock)";
  return fact;
}

std::string genreFact(const CrateSuggestion& suggestion, const CrateWish& wish) {
  const auto genre = text::lowercased(suggestion.track->genre);
  const auto likeness = suggestion.points.genre.value_or(0);
  if (likeness == 1) return genre + " like this one";
  return likeness > 0 ? genre + ", near " + text::lowercased(wish.current.genre) : genre;
}

std::string playedFact(const CrateSuggestion& suggestion, CrateTime now) {
  if (suggestion.points.followed > 0) {
    return "you played it after this track on " + CrateDates::day(suggestion.points.followed, now);
  }
  const auto last = suggestion.track->lastPlayed;
  if (last == 0) return "";
  const auto hours = (now - last) / hour;
  if (hours < 1) return "you played it within the last hour";
  if (hours < 24)
    return "you played it " + std::to_string(hours) + (hours == 1 ? " hour" : " hours") + " ago";
  return "last played on " + CrateDates::day(last, now);
}

} // namespace

std::string reasonFor(const CrateSuggestion& suggestion, const CrateWish& wish) {
  const auto& track = *suggestion.track;
  const auto& tempo = suggestion.points.tempo;
  std::vector<std::string> facts;
  const auto add = [&](const std::string& fact) {
    if (!fact.empty()) facts.push_back(fact);
  };
  if (suggestion.isOutOfTolerance) add("outside your BPM tolerance");
  if (suggestion.isThirdOfArtist) add("one more of this artist for want of others");
  add(tempo ? tempoFact(*tempo) : track.bpm > 0 ? "" : "its tempo is not known");
  if (!wish.keys) {
    // The DJ doesn't want to hear of them.
  } else if (track.key && wish.current.key) {
    add(keyFact(*wish.current.key, *track.key, tempo ? tempo->pitch : 0));
  } else if (!track.key) {
    add("its key is not known");
  }
  if (track.energy > 0 && wish.current.energy > 0) {
    add("energy " + std::to_string(wish.current.energy) + " → " + std::to_string(track.energy));
  }
  add(genreFact(suggestion, wish));
  if (suggestion.points.list) add("in “" + suggestion.points.list->name + "” like this one");
  add(playedFact(suggestion, wish.now));
  if (track.rating >= 4) add(std::to_string(track.rating) + " stars");
  if (facts.empty()) add("nothing is known of it but its name");
  auto sentence = text::joined(facts, ", ") + ".";
  return text::asciiUppercased(sentence.substr(0, 1)) + sentence.substr(1);
}

} // namespace velmor
