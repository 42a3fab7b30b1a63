#include "analysis/AudioAnalysisService.h"
#include "analysis/LastMeasurement.h"
#include "app/AppController.h"
#include "base/Number.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "crate/ranking/CrateAnswer.h"
#include "model/CamelotKey.h"
#include "model/ModelProvider.h"
#include "nowplaying/readers/RekordboxDetector.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "platform/SystemLog.h"
#include "platform/async/Waiting.h"

#include <array>
#include <utility>

namespace velmor {

namespace {

constexpr auto noActiveDeck = "rekordbox is running but no active deck was detected. Play a track "
                              "in Performance mode, then try again.";

/// Looks for the track and turns every failure into the sentence for the user.
NowPlayingTrack detect(NowPlayingDetector& detector, const Platform& platform) {
  try {
    return detector.current();
  } catch (const NowPlayingError& error) {
    const bool nothing = error.errorCase() == NowPlayingError::Case::noActiveSession;
    if (nothing && RekordboxDetector::isRunning(platform)) throw VelmorError(noActiveDeck);
    throw VelmorError(error.errorDescription());
  } catch (const std::exception& error) {
    throw VelmorError(error.what());
  }
}

/// How the result's label begins, by how the track was found.
std::string labelPrefix(const std::string& detection) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 7> prefixes{{
      {"macOS media session", "macOS Media Control + "},
      {"Serato performance history", "Serato Performance History + "},
      {"Mixxx current-track metadata", "Mixxx Current Track + "},
      {"rekordbox deck metadata", "rekordbox Deck Metadata + "},
      {"VirtualDJ master-deck metadata", "VirtualDJ Master Deck + "},
      {"VirtualDJ play history", "VirtualDJ Play History + "},
      {"djay Pro play history", "djay Pro Play History + "},
  }};
  for (const auto& [known, prefix] : prefixes) {
    if (detection == known) return std::string(prefix);
  }
  return "macOS Media Control + ";
}

std::string orDefault(const std::string& detection, const char* standard) {
  return detection.empty() ? standard : detection;
}

/// What listening gave.
struct Measurement {
  bool extractorInstalled = false;
  /// Nothing when the sample could not be captured or measured.
  std::optional<AudioAnalysisService::Features> features;
};

Measurement measure(const Platform& platform, const AudioAnalysisService::Known& known) {
  if (!AudioAnalysisService::extractorPath(platform)) return {};
  try {
    const auto features = AudioAnalysisService::analyze(platform, known);
    LastMeasurement::keep(platform, LastMeasurement::outcomeOf(features));
    return {true, features};
  } catch (const std::exception& error) {
    platform.log.write("Velmor: the sample could not be measured: " + messageOf(error));
    LastMeasurement::keep(platform, "failed: " + messageOf(error));
    return {true, std::nullopt};
  }
}

std::string noticeFor(const std::string& detection, const Measurement& measurement) {
  const auto detected = "Detected through " + orDefault(detection, "macOS now-playing metadata");
  if (!measurement.extractorInstalled) return detected + ".";
  if (measurement.features) return detected + " and analyzed with Essentia.";
  return detected + "; Essentia audio analysis was unavailable for this sample.";
}

void addMeasurement(TrackMetadata& track, const AudioAnalysisService::Features& features) {
  track.bpm = features.bpm;
  track.key = CamelotKey::toCamelot(text::trimmed(features.key + " " + features.scale));
  track.other =
      "Essentia audio analysis; average loudness " + number::formatFixed(features.loudness, 3);
}

} // namespace

bool AppController::isKeyMissing(const std::string& model) const {
  return modelProvider(model) != ModelProvider::Crate && configStore->apiKey(model).empty();
}

void AppController::requireKey() const {
  const auto model = configStore->current().aiModel;
  if (!isKeyMissing(model)) return;
  throw VelmorError(providerName(model) + " API key is required for recommendations");
}

Task<VisionResult> AppController::suggestTracks() {
  requireKey();
  const auto track = co_await detectTrack();
  co_return co_await suggestTracksAfter(track);
}

Task<VisionResult> AppController::suggestTracksAfter(NowPlayingTrack track) {
  try {
    co_return co_await analyzeNowPlaying(track);
  } catch (const std::exception& error) {
    throw VelmorError(messageOf(error));
  }
}

Task<NowPlayingTrack> AppController::detectTrack() {
  const auto note = [detector = nowPlaying] { return detector->noteClocks(); };
  const bool noted = co_await occupied(platform.mainLoop, note);
  if (noted) co_await Sleep(platform.mainLoop, NowPlayingDetector::secondLook);
  const auto look = [detector = nowPlaying, system = platform] {
    return detect(*detector, system);
  };
  auto track = co_await occupied(platform.mainLoop, look);
  detected = metadata(track);
  co_return track;
}

Task<VisionResult> AppController::analyzeNowPlaying(NowPlayingTrack track) {
  auto result = co_await analyze(std::move(track), configStore->current());
  if (suggestionListener) suggestionListener(result);
  co_return result;
}

Task<VisionResult> AppController::analyze(NowPlayingTrack track, AppConfig config) {
  const bool isCrate = modelProvider(config.aiModel) == ModelProvider::Crate;
  auto current = metadata(track);
  Crate::Contents music;
  if (isCrate) {
    music = co_await knownMusic();
    current = CrateAnswer::completed(std::move(current), *music);
  } else {
    // Nothing is recorded for a question that could not be asked.
    aiClient.check(modelRequest(current, track.source, config));
  }
  Measurement measurement;
  const bool isKnown = isCrate && current.bpm > 0 && !current.key.empty();
  if (!isKnown) {
    const AudioAnalysisService::Known known{current.bpm, current.key, current.genre};
    const auto listen = [system = platform, known] { return measure(system, known); };
    measurement = co_await occupied(platform.mainLoop, listen);
  }
  if (measurement.features) addMeasurement(current, *measurement.features);
  // A request costs money: none is sent for a track that has gone meanwhile.
  const bool cancelled = co_await isCancelled();
  if (cancelled) throw VelmorError("The suggestion was cancelled.");

  auto question = isCrate ? askCrate(current, music, config)
                          : aiClient.recommend(modelRequest(current, track.source, config));
  Analysis analysis = co_await question;
  co_return VisionResult{.currentTrack = analysis.currentTrack,
                         .recommendations = analysis.recommendations,
                         .source = labelPrefix(track.detection) + providerName(config.aiModel),
                         .notice = noticeFor(track.detection, measurement)};
}

AIClient::Request AppController::modelRequest(TrackMetadata current, std::string source,
                                              const AppConfig& config) const {
  return {.apiKey = configStore->apiKey(config.aiModel),
          .model = config.aiModel,
          .current = std::move(current),
          .source = std::move(source),
          .bpmTolerance = config.bpmTolerance,
          .recommendationCount = config.recommendationCount};
}

TrackMetadata AppController::metadata(const NowPlayingTrack& track) {
  return {.song = track.title,
          .artist = track.artist,
          .album = track.album,
          .bpm = track.bpm,
          .key = CamelotKey::toCamelot(track.key),
          .genre = track.genre,
          .energy = 0,
          .other = "Verified by " + orDefault(track.detection, "macOS media session"),
          .confidence = 100};
}

} // namespace velmor
