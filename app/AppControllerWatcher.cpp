#include "app/AppController.h"
#include "base/Json.h"
#include "base/Text.h"
#include "model/ModelProvider.h"
#include "platform/Workspace.h"
#include "platform/async/Waiting.h"

namespace velmor {

namespace {

constexpr Seconds pollInterval{1.5};
constexpr int missesUntilStopped = 2;

/// Two texts that a DJ reads as the same come out the same.
std::string folded(const std::string& value) {
  const auto lower = text::lowercased(text::composed(value));
  return std::string(text::trimmed(lower));
}

} // namespace

template <typename Payload>
void AppController::emit(const char* event, const Payload& payload) {
  std::optional<std::string> json;
  try {
    json = jsonEncoder().encode(payload);
  } catch (const EncodingError&) {
    // The page still hears of the event, with nothing in it.
  }
  emitPlain(event, json);
}

std::string AppController::trackFingerprint(const NowPlayingTrack& track) {
  const auto title = folded(track.title);
  const auto artist = folded(track.artist);
  if (title.empty() || artist.empty()) return "";
  return title + '\0' + artist;
}

void AppController::startNowPlayingWatcher() {
  if (watchTask) return;
  watchTask = tasks.start(watch());
}

void AppController::stopNowPlayingWatcher() {
  if (watchTask) watchTask->cancel();
  watchTask.reset();
  const std::lock_guard guard(stateLock);
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
  const auto detect = [this] { return nowPlaying.current(); };
  std::optional<NowPlayingTrack> track;
  std::optional<NowPlayingError> denied;
  try {
    track = whileOccupyingActor(platform.mainLoop, detect);
  } catch (const NowPlayingError& error) {
    denied = error;
  } catch (const std::exception&) {
    // Whatever else went wrong, there is no track: it counts as a miss like any other.
  }
  // The window may have been closed while the poll ran.
  const bool cancelled = co_await isCancelled();
  if (cancelled) co_return;
  if (denied) reportDeniedAccess(*denied);
  if (track) {
    handleTrackChange(*track);
    misses = 0;
  } else if (++misses >= missesUntilStopped) {
    handleTrackStopped();
  }
}

void AppController::reportDeniedAccess(const NowPlayingError& error) {
  if (error.errorCase() != NowPlayingError::Case::accessibilityDenied) return;
  if (!isRekordboxRunning()) return;
  {
    const std::lock_guard guard(stateLock);
    if (error.errorDescription() == lastAccessibilityNotice) return;
    lastAccessibilityNotice = error.errorDescription();
  }
  emit(event::analysisError, error.errorDescription());
}

void AppController::handleTrackChange(const NowPlayingTrack& track) {
  const auto fingerprint = trackFingerprint(track);
  if (fingerprint.empty()) return;
  {
    const std::lock_guard guard(stateLock);
    if (fingerprint == lastTrack) return;
    lastTrack = fingerprint;
    if (analysisTask) analysisTask->cancel();
  }
  emit(event::trackChanged, metadata(track));
  const auto config = configStore->current();
  if (!config.autoSuggestTracks || configStore->apiKey(config.aiModel).empty()) return;
  analysisTask = tasks.start(suggestFor(track, fingerprint));
}

Task<void> AppController::suggestFor(NowPlayingTrack track, std::string fingerprint) {
  std::optional<VisionResult> result;
  std::string failure;
  try {
    result = co_await analyzeNowPlaying(track);
  } catch (const std::exception& error) {
    failure = error.what();
  }
  const bool cancelled = co_await isCancelled();
  if (cancelled || !isCurrent(fingerprint)) co_return;
  if (result)
    emit(event::suggestionsReady, *result);
  else
    emit(event::analysisError, failure);
}

bool AppController::isCurrent(const std::string& fingerprint) {
  const std::lock_guard guard(stateLock);
  return lastTrack == fingerprint;
}

void AppController::handleTrackStopped() {
  {
    const std::lock_guard guard(stateLock);
    if (lastTrack.empty()) return;
    lastTrack.clear();
    if (analysisTask) analysisTask->cancel();
    analysisTask.reset();
  }
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
  if (!previous.autoSuggestTracks || recommendationSettingsChanged(previous, next)) {
    const std::lock_guard guard(stateLock);
    if (analysisTask) analysisTask->cancel();
    analysisTask.reset();
    lastTrack.clear();
  }
  startNowPlayingWatcher();
}

bool AppController::recommendationSettingsChanged(const AppConfig& previous,
                                                  const AppConfig& next) {
  if (previous.aiModel != next.aiModel) return true;
  if (previous.recommendationCount != next.recommendationCount) return true;
  if (previous.bpmTolerance != next.bpmTolerance) return true;
  return modelProvider(next.aiModel) == ModelProvider::OpenAI
             ? previous.openaiApiKey != next.openaiApiKey
             : previous.tinkerApiKey != next.tinkerApiKey;
}

} // namespace velmor
