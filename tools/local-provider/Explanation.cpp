#include "Explanation.h"

#include "Numbers.h"

#include <cmath>
#include <cstdlib>
#include <vector>

namespace velmor::tools {
namespace {

std::string tempoPhrase(const Tempo& tempo) {
  std::string phrase = "the same tempo";
  if (const auto amount = shortText(std::abs(tempo.difference)); amount != "0")
    phrase = amount + (tempo.difference > 0 ? " BPM faster" : " BPM slower");
  // A song at twice the tempo is heard at half of it, and the other way round.
  if (tempo.factor < 1) phrase += " in half time";
  if (tempo.factor > 1) phrase += " in double time";
  return phrase;
}

std::string keyPhrase(CamelotCode current, CamelotCode song) {
  const int steps = current.stepsTo(song);
  if (song == current) return "the same key " + song.text();
  if (steps == 0) return "the relative key " + song.text();
  const bool sameRing = current.major == song.major;
  if (sameRing && std::abs(steps) == 1)
    return "key " + song.text() + " one step " + (steps > 0 ? "above " : "below ") + current.text();
  return "key " + song.text() + " against " + current.text();
}

std::string genrePhrase(const Genre& current, const Genre& song) {
  if (song.name() == current.name()) return "the same genre " + song.name();
  const bool related = current.distanceTo(song) < 0.5;
  return (related ? "the related genre " : "a change of genre to ") + song.name();
}

std::string energyPhrase(int rise) {
  if (std::abs(rise) <= 5) return "an energy much the same";
  return rise > 0 ? "more energy" : "less energy";
}

std::string sentence(const std::vector<std::string>& phrases) {
  std::string text = phrases.front();
  for (size_t index = 1; index < phrases.size(); ++index)
    text += (index + 1 == phrases.size() ? " and " : ", ") + phrases[index];
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text + ".";
}

} // namespace

std::string Explanation::of(const Comparison& comparison) {
  std::vector<std::string> phrases;
  if (comparison.tempo) phrases.push_back(tempoPhrase(*comparison.tempo));
  if (comparison.currentKey && comparison.songKey)
    phrases.push_back(keyPhrase(*comparison.currentKey, *comparison.songKey));
  if (comparison.currentGenre && comparison.songGenre)
    phrases.push_back(genrePhrase(*comparison.currentGenre, *comparison.songGenre));
  if (comparison.energyRise) phrases.push_back(energyPhrase(*comparison.energyRise));
  if (phrases.empty()) return "A well-known song, as nothing is known of the current one's sound.";
  return sentence(phrases);
}

} // namespace velmor::tools
