#include "model/Recommendation.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const Recommendation& recommendation) {
  json = {
      {"song", recommendation.song},
      {"artist", recommendation.artist},
      {"album", recommendation.album},
      {"bpm", jsonNumber(recommendation.bpm)},
      {"key", recommendation.key},
      {"genre", recommendation.genre},
      {"energy", recommendation.energy},
      {"compatibilityScore", recommendation.compatibilityScore},
      {"explanation", recommendation.explanation},
  };
}

void from_json(const nlohmann::json& json, Recommendation& recommendation) {
  const RecordReader members(json);
  recommendation.song = members.text("song");
  recommendation.artist = members.text("artist");
  recommendation.album = members.text("album");
  recommendation.bpm = members.number("bpm");
  recommendation.key = members.text("key");
  recommendation.genre = members.text("genre");
  recommendation.energy = members.integer("energy");
  recommendation.compatibilityScore = members.integer("compatibilityScore");
  recommendation.explanation = members.text("explanation");
}

} // namespace velmor
