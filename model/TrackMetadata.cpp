#include "model/TrackMetadata.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const TrackMetadata& track) {
  json = {
      {"song", track.song},           {"artist", track.artist}, {"album", track.album},
      {"bpm", jsonNumber(track.bpm)}, {"key", track.key},       {"genre", track.genre},
      {"energy", track.energy},       {"other", track.other},   {"confidence", track.confidence},
  };
}

void from_json(const nlohmann::json& json, TrackMetadata& track) {
  const RecordReader members(json);
  track.song = members.text("song");
  track.artist = members.text("artist");
  track.album = members.text("album");
  track.bpm = members.number("bpm");
  track.key = members.text("key");
  track.genre = members.text("genre");
  track.energy = members.integer("energy");
  track.other = members.text("other");
  track.confidence = members.integer("confidence");
}

} // namespace velmor
