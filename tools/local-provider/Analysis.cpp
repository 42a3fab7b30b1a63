#include "Analysis.h"

#include <nlohmann/json.hpp>

namespace velmor::tools {
namespace {

using nlohmann::json;

json currentTrack(const PromptFacts& facts) {
  return {{"song", facts.song},     {"artist", facts.artist}, {"album", facts.album},
          {"bpm", facts.bpm},       {"key", facts.key},       {"genre", facts.genre},
          {"energy", facts.energy}, {"other", facts.notes},   {"confidence", 100}};
}

json recommendation(const RankedSong& ranked) {
  const auto& song = ranked.song;
  return {{"song", song.song},
          {"artist", song.artist},
          {"album", song.album},
          {"bpm", song.bpm},
          {"key", song.key},
          {"genre", song.genre},
          {"energy", song.energy},
          {"compatibilityScore", ranked.score},
          {"explanation", ranked.explanation}};
}

} // namespace

json Analysis::of(const PromptFacts& facts, const std::vector<RankedSong>& ranking) {
  json recommendations = json::array();
  for (const auto& ranked : ranking)
    recommendations.push_back(recommendation(ranked));
  return {{"playbackDetected", true},
          {"playbackEvidence", "macOS system media session reports Playing"},
          {"currentTrack", currentTrack(facts)},
          {"recommendations", std::move(recommendations)}};
}

} // namespace velmor::tools
