#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// What a now-playing reader reports.
struct NowPlayingTrack {
  std::string title;
  std::string artist;
  /// "" when unknown, like `genre` and `key`.
  std::string album;
  std::string genre;
  /// Beats per minute; 0 when unknown.
  double bpm = 0;
  /// In any notation.
  std::string key;
  /// Display name of the application that plays the track.
  std::string source;
  /// How the track was found, for example "djay Pro play history".
  std::string detection;

  bool operator==(const NowPlayingTrack&) const = default;
};

/// One suggested next track. Its place in a list is its rank, the first being the best.
struct Recommendation {
  std::string song;
  std::string artist;
  std::string album;
  double bpm = 0;
  /// In Camelot notation after validation; "" when unknown.
  std::string key;
  std::string genre;
  /// 0 to 100, as the model gives it.
  std::int64_t energy = 0;
  /// How well it mixes after the current track, 0 to 100 after validation.
  std::int64_t compatibilityScore = 0;
  std::string explanation;

  bool operator==(const Recommendation&) const = default;
};

void to_json(nlohmann::json& json, const Recommendation& recommendation);
void from_json(const nlohmann::json& json, Recommendation& recommendation);

/// A track as the page and the model see it.
struct TrackMetadata {
  std::string song;
  std::string artist;
  std::string album;
  /// Beats per minute; 0 when unknown.
  double bpm = 0;
  /// In Camelot notation after validation; "" when unknown.
  std::string key;
  std::string genre;
  /// 0 to 100; 0 when unknown.
  std::int64_t energy = 0;
  /// Free notes on the source and the sound.
  std::string other;
  /// 0 to 100.
  std::int64_t confidence = 0;

  bool operator==(const TrackMetadata&) const = default;
};

void to_json(nlohmann::json& json, const TrackMetadata& track);
void from_json(const nlohmann::json& json, TrackMetadata& track);

/// The model's answer.
struct Analysis {
  bool playbackDetected = false;
  /// What confirms that something plays.
  std::string playbackEvidence;
  TrackMetadata currentTrack;
  /// Empty when nothing plays.
  std::vector<Recommendation> recommendations;

  bool operator==(const Analysis&) const = default;
};

void to_json(nlohmann::json& json, const Analysis& analysis);
void from_json(const nlohmann::json& json, Analysis& analysis);

/// The result of one suggestion run, as the page shows it.
struct VisionResult {
  TrackMetadata currentTrack;
  std::vector<Recommendation> recommendations;
  /// How the current track was detected and which provider answered.
  std::string source;
  /// A note for the page.
  std::string notice;

  bool operator==(const VisionResult&) const = default;
};

void to_json(nlohmann::json& json, const VisionResult& result);
void from_json(const nlohmann::json& json, VisionResult& result);

/// What the page needs to know about the services.
struct AppState {
  /// There is an API key for the configured model.
  bool aiAvailable = false;
  /// The audio extractor is installed.
  bool essentiaAvailable = false;
  /// A status text.
  std::string provider;

  bool operator==(const AppState&) const = default;
};

void to_json(nlohmann::json& json, const AppState& state);
void from_json(const nlohmann::json& json, AppState& state);

/// The application's version, for the page.
struct AppInfo {
  std::string version;
  std::string buildDate;

  bool operator==(const AppInfo&) const = default;
};

void to_json(nlohmann::json& json, const AppInfo& info);
void from_json(const nlohmann::json& json, AppInfo& info);

/// The outcome of a version check.
struct UpdateInfo {
  std::string current;
  /// "" when the check got none.
  std::string latest;
  bool updateAvailable = false;
  /// "" when there is none, like `releaseNotesUrl`.
  std::string downloadUrl;
  std::string releaseNotesUrl;
  /// The version server could not be reached.
  bool offline = false;

  bool operator==(const UpdateInfo&) const = default;
};

void to_json(nlohmann::json& json, const UpdateInfo& info);
void from_json(const nlohmann::json& json, UpdateInfo& info);

} // namespace velmor
