#include "model/Records.h"

#include "base/Json.h"

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

void to_json(nlohmann::json& json, const Analysis& analysis) {
  json = {
      {"playbackDetected", analysis.playbackDetected},
      {"playbackEvidence", analysis.playbackEvidence},
      {"currentTrack", analysis.currentTrack},
      {"recommendations", analysis.recommendations},
  };
}

void from_json(const nlohmann::json& json, Analysis& analysis) {
  const RecordReader members(json);
  analysis.playbackDetected = members.boolean("playbackDetected");
  analysis.playbackEvidence = members.text("playbackEvidence");
  analysis.currentTrack = members.record<TrackMetadata>("currentTrack");
  analysis.recommendations = members.records<Recommendation>("recommendations");
}

void to_json(nlohmann::json& json, const VisionResult& result) {
  json = {
      {"currentTrack", result.currentTrack},
      {"recommendations", result.recommendations},
      {"source", result.source},
      {"notice", result.notice},
  };
}

void from_json(const nlohmann::json& json, VisionResult& result) {
  const RecordReader members(json);
  result.currentTrack = members.record<TrackMetadata>("currentTrack");
  result.recommendations = members.records<Recommendation>("recommendations");
  result.source = members.text("source");
  result.notice = members.text("notice");
}

void to_json(nlohmann::json& json, const AppState& state) {
  json = {
      {"aiAvailable", state.aiAvailable},
      {"essentiaAvailable", state.essentiaAvailable},
      {"provider", state.provider},
  };
}

void from_json(const nlohmann::json& json, AppState& state) {
  const RecordReader members(json);
  state.aiAvailable = members.boolean("aiAvailable");
  state.essentiaAvailable = members.boolean("essentiaAvailable");
  state.provider = members.text("provider");
}

void to_json(nlohmann::json& json, const AppInfo& info) {
  json = {
      {"version", info.version},
      {"buildDate", info.buildDate},
  };
}

void from_json(const nlohmann::json& json, AppInfo& info) {
  const RecordReader members(json);
  info.version = members.text("version");
  info.buildDate = members.text("buildDate");
}

void to_json(nlohmann::json& json, const UpdateInfo& info) {
  json = {
      {"current", info.current},
      {"latest", info.latest},
      {"updateAvailable", info.updateAvailable},
      {"downloadUrl", info.downloadUrl},
      {"releaseNotesUrl", info.releaseNotesUrl},
      {"offline", info.offline},
  };
}

void from_json(const nlohmann::json& json, UpdateInfo& info) {
  const RecordReader members(json);
  info.current = members.text("current");
  info.latest = members.text("latest");
  info.updateAvailable = members.boolean("updateAvailable");
  info.downloadUrl = members.text("downloadUrl");
  info.releaseNotesUrl = members.text("releaseNotesUrl");
  info.offline = members.boolean("offline");
}

} // namespace velmor
