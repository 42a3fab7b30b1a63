#include "app/AppController.h"
#include "app/streams/TrackLooking.h"
#include "base/VelmorError.h"
#include "model/ModelProvider.h"
#include "platform/async/Waiting.h"

namespace velmor {

namespace {

constexpr Seconds pollInterval{1.5};
constexpr int missesUntilStopped = TrackChanges::missesUntilStopped;

} // namespace

void AppController::startNowPlayingWatcher() {
  isAutomatic = true;
  startLooking();
}

void AppController::stopNowPlayingWatcher() {
  isAutomatic = false;
  stopLookingWhenUnwanted();
  forgetTrack();
}

void AppController::setListeners(std::function<void(const TrackLook&)> onLook,
                                 std::function<void(const VisionResult&)> onSuggestions) {
  lookListener = std::move(onLook);
  suggestionListener = std::move(onSuggestions);
}

void AppController::lookForListeners(bool wanted) {
  hasListeners = wanted;
  if (wanted)
    startLooking();
  else
    stopLookingWhenUnwanted();
}

void AppController::startLooking() {
  if (!watchTask) watchTask = tasks.start(watch());
}

void AppController::stopLookingWhenUnwanted() {
  if (isAutomatic || hasListeners) return;
  if (watchTask) watchTask->cancel();
  watchTask.reset();
}

void AppController::forgetTrack() {
  if (analysisTask) analysisTask->cancel();
  analysisTask.reset();
  lastTrack.clear();
}

Task<void> AppController::watch() {
  int misses = 0;
  for (;;) {
    const bool cancelled = co_await isCancelled();
    if (cancelled) co_return;
    co_await poll(misses);
    co_await Sleep(platform.mainLoop, pollInterval);
  }
}

Task<void> AppController::poll(int& misses) {
  const auto ask = [detector = nowPlaying, system = platform] {
    return lookForTrack(*detector, system);
  };
  const TrackLook seen = co_await occupied(platform.mainLoop, ask);
  // The window may have been closed while the poll ran.
  const bool cancelled = co_await isCancelled();
  if (cancelled) co_return;
  if (lookListener) lookListener(seen);
  if (!isAutomatic) co_return;
  if (!seen.deniedAccess.empty()) reportDeniedAccess(seen.deniedAccess);
  if (seen.track) {
    handleTrackChange(*seen.track);
    misses = 0;
  } else if (++misses >= missesUntilStopped) {
    handleTrackStopped();
  }
}

void AppController::reportDeniedAccess(const std::string& notice) {
  if (notice == lastAccessibilityNotice) return;
  lastAccessibilityNotice = notice;
  emit(event::analysisError, notice);
}

void AppController::handleTrackChange(const NowPlayingTrack& track) {
  const auto fingerprint = trackFingerprint(track);
  if (fingerprint.empty() || fingerprint == lastTrack) return;
  lastTrack = fingerprint;
  if (analysisTask) analysisTask->cancel();
  emit(event::trackChanged, metadata(track));
  const auto config = configStore->current();
  if (!config.autoSuggestTracks || isKeyMissing(config.aiModel)) return;
  analysisTask = tasks.start(suggestFor(track, fingerprint));
}

Task<void> AppController::suggestFor(NowPlayingTrack track, std::string fingerprint) {
  std::optional<VisionResult> result;
  std::string failure;
  try {
    result = co_await analyzeNowPlaying(track);
  } catch (const std::exception& error) {
    failure = messageOf(error);
  }
  const bool cancelled = co_await isCancelled();
  if (cancelled || fingerprint != lastTrack) co_return;
  if (result)
    emit(event::suggestionsReady, *result);
  else
    emit(event::analysisError, failure);
}

void AppController::handleTrackStopped() {
  if (lastTrack.empty()) return;
  forgetTrack();
  tasks.start(tellStopped());
}

Task<void> AppController::tellStopped() {
  emitPlain(event::trackStopped, std::nullopt);
  co_return;
}

void AppController::saveSettings(const AppConfig& config) {
  const auto previous = configStore->current();
  configStore->save(config);
  const auto next = configStore->current();
  if (!next.autoSuggestTracks) {
    stopNowPlayingWatcher();
    return;
  }
  if (!previous.autoSuggestTracks || recommendationSettingsChanged(previous, next)) forgetTrack();
  startNowPlayingWatcher();
}

bool AppController::recommendationSettingsChanged(const AppConfig& previous,
                                                  const AppConfig& next) {
  if (previous.aiModel != next.aiModel) return true;
  if (previous.recommendationCount != next.recommendationCount) return true;
  if (previous.bpmTolerance != next.bpmTolerance) return true;
  switch (modelProvider(next.aiModel)) {
  case ModelProvider::OpenAI:
    return previous.openaiApiKey != next.openaiApiKey;
  case ModelProvider::Tinker:
    return previous.tinkerApiKey != next.tinkerApiKey;
  case ModelProvider::Crate:
    return false;
  }
  return false;
}

} // namespace velmor
