#pragma once

#include "base/Record.h"

#include <cstdint>
#include <string>
#include <vector>

/// The records that pass between the readers, the model providers and the page. They are plain
/// values: a copy shares nothing with the original. Their JSON form follows from `fields()`
/// (base/Json.h): all keys are written always, and all are wanted when a record is read.
/// In every record an unknown text is "" and an unknown number 0.
namespace velmor {

/// The track that a reader found playing. The command line prints its JSON form; the page and the
/// model see it as TrackMetadata.
struct NowPlayingTrack {
  /// As the source shows it, like all texts here.
  std::string title;
  std::string artist;
  std::string album;
  std::string genre;
  /// Beats per minute.
  double bpm = 0;
  /// In any notation ("A minor", "8A", "F♯m").
  std::string key;
  /// Display name of the application that plays the track, for example "Mixxx".
  std::string source;
  /// How the track was found, for example "djay Pro play history".
  std::string detection;

  static constexpr auto fields() {
    return std::tuple{
        Field{"title", &NowPlayingTrack::title},   Field{"artist", &NowPlayingTrack::artist},
        Field{"album", &NowPlayingTrack::album},   Field{"genre", &NowPlayingTrack::genre},
        Field{"bpm", &NowPlayingTrack::bpm},       Field{"key", &NowPlayingTrack::key},
        Field{"source", &NowPlayingTrack::source}, Field{"detection", &NowPlayingTrack::detection},
    };
  }
};

/// One suggested next track. Its place in a list is its rank, the first being the best.
struct Recommendation {
  /// Never empty after validation, like `artist`.
  std::string song;
  std::string artist;
  std::string album;
  /// Beats per minute.
  double bpm = 0;
  /// In Camelot notation ("1A" to "12B") after validation.
  std::string key;
  std::string genre;
  /// 0 to 100 is what the model is asked for; what it gives is kept as it is.
  std::int64_t energy = 0;
  /// How well it mixes after the current track: 0 to 100 after validation.
  std::int64_t compatibilityScore = 0;
  /// Why the model chose it.
  std::string explanation;

  static constexpr auto fields() {
    return std::tuple{
        Field{"song", &Recommendation::song},
        Field{"artist", &Recommendation::artist},
        Field{"album", &Recommendation::album},
        Field{"bpm", &Recommendation::bpm},
        Field{"key", &Recommendation::key},
        Field{"genre", &Recommendation::genre},
        Field{"energy", &Recommendation::energy},
        Field{"compatibilityScore", &Recommendation::compatibilityScore},
        Field{"explanation", &Recommendation::explanation},
    };
  }
};

/// A track as the model and the page see it.
struct TrackMetadata {
  std::string song;
  std::string artist;
  std::string album;
  /// Beats per minute.
  double bpm = 0;
  /// In Camelot notation ("1A" to "12B") after validation.
  std::string key;
  std::string genre;
  /// 0 to 100.
  std::int64_t energy = 0;
  /// Free notes on the source and on what was measured.
  std::string other;
  /// How sure the data are, 0 to 100; 100 for a track that a reader found.
  std::int64_t confidence = 0;

  static constexpr auto fields() {
    return std::tuple{
        Field{"song", &TrackMetadata::song},
        Field{"artist", &TrackMetadata::artist},
        Field{"album", &TrackMetadata::album},
        Field{"bpm", &TrackMetadata::bpm},
        Field{"key", &TrackMetadata::key},
        Field{"genre", &TrackMetadata::genre},
        Field{"energy", &TrackMetadata::energy},
        Field{"other", &TrackMetadata::other},
        Field{"confidence", &TrackMetadata::confidence},
    };
  }
};

/// The model's answer.
struct Analysis {
  /// Something is known to play.
  bool playbackDetected = false;
  /// What confirms it.
  std::string playbackEvidence;
  TrackMetadata currentTrack;
  /// The best first; empty when nothing plays.
  std::vector<Recommendation> recommendations;

  static constexpr auto fields() {
    return std::tuple{
        Field{"playbackDetected", &Analysis::playbackDetected},
        Field{"playbackEvidence", &Analysis::playbackEvidence},
        Field{"currentTrack", &Analysis::currentTrack},
        Field{"recommendations", &Analysis::recommendations},
    };
  }
};

/// The result of one suggestion run, for the page.
struct VisionResult {
  TrackMetadata currentTrack;
  /// The best first.
  std::vector<Recommendation> recommendations;
  /// How the current track was found and which provider answered.
  std::string source;
  /// A remark for the user.
  std::string notice;

  static constexpr auto fields() {
    return std::tuple{
        Field{"currentTrack", &VisionResult::currentTrack},
        Field{"recommendations", &VisionResult::recommendations},
        Field{"source", &VisionResult::source},
        Field{"notice", &VisionResult::notice},
    };
  }
};

/// What the page needs to know about the services when it opens and after the settings change.
struct AppState {
  /// There is an API key for the configured model, in the environment or in the settings. It has
  /// not been tried.
  bool aiAvailable = false;
  /// The program that measures tempo and key is installed.
  bool essentiaAvailable = false;
  /// A sentence for the user: "OpenAI recommendations ready", "Tinker recommendations ready" or
  /// "API key required".
  std::string provider;

  static constexpr auto fields() {
    return std::tuple{
        Field{"aiAvailable", &AppState::aiAvailable},
        Field{"essentiaAvailable", &AppState::essentiaAvailable},
        Field{"provider", &AppState::provider},
    };
  }
};

/// The running program, for the page's About box.
struct AppInfo {
  /// Three numbers with points between them, for example "1.0.0".
  std::string version;
  /// The day of the build.
  std::string buildDate;

  static constexpr auto fields() {
    return std::tuple{
        Field{"version", &AppInfo::version},
        Field{"buildDate", &AppInfo::buildDate},
    };
  }
};

/// The outcome of a version check.
struct UpdateInfo {
  /// The running version.
  std::string current;
  /// The newest release that the version server knows; "" when the check got none.
  std::string latest;
  /// `latest` is newer than `current`.
  bool updateAvailable = false;
  /// Where to get the release and to read about it; "" when the server names no address.
  std::string downloadUrl;
  std::string releaseNotesUrl;
  /// The version server could not be reached.
  bool offline = false;

  static constexpr auto fields() {
    return std::tuple{
        Field{"current", &UpdateInfo::current},
        Field{"latest", &UpdateInfo::latest},
        Field{"updateAvailable", &UpdateInfo::updateAvailable},
        Field{"downloadUrl", &UpdateInfo::downloadUrl},
        Field{"releaseNotesUrl", &UpdateInfo::releaseNotesUrl},
        Field{"offline", &UpdateInfo::offline},
    };
  }
};

} // namespace velmor
