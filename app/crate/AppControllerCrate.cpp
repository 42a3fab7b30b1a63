#include "ai/AnalysisValidation.h"
#include "app/AppController.h"
#include "base/VelmorError.h"
#include "crate/ranking/CrateAnswer.h"
#include "crate/tracks/FileAddress.h"
#include "model/ModelProvider.h"
#include "platform/Clock.h"
#include "platform/Workspace.h"
#include "platform/async/Waiting.h"

#include <algorithm>

namespace velmor {

namespace {

std::string notThere(const std::string& name) {
  return "Your crate has no track with the name \"" + name + "\".";
}

} // namespace

Task<VisionResult> AppController::suggestFromCrate() {
  auto config = configStore->current();
  config.aiModel = crateModel;
  const auto track = co_await detectTrack();
  try {
    co_return co_await analyze(track, config);
  } catch (const std::exception& error) {
    throw VelmorError(error.what());
  }
}

Task<VisionResult> AppController::suggestAfterNamed(std::string name) {
  const auto music = co_await knownMusic();
  const auto* const track = CrateAnswer::named(name, *music);
  if (!track) throw VelmorError(notThere(name) + " Give it as \"Artist - Title\".");
  co_return co_await suggestAfterTrack(track, music);
}

Task<VisionResult> AppController::suggestAfter(SongName song) {
  const auto music = co_await knownMusic();
  const auto* const track = music->find(song.artist, song.song);
  if (!track) throw VelmorError(notThere(song.artist + " - " + song.song));
  co_return co_await suggestAfterTrack(track, music);
}

Task<VisionResult> AppController::suggestAfterTrack(const CrateTrack* track,
                                                    Crate::Contents music) {
  const auto analysis =
      co_await askCrate(CrateAnswer::metadata(*track), music, configStore->current());
  co_return VisionResult{.currentTrack = analysis.currentTrack,
                         .recommendations = analysis.recommendations,
                         .source = providerName(crateModel),
                         .notice = "Found in your crate."};
}

Task<std::vector<std::optional<CrateEntry>>>
AppController::lookUpInCrate(std::vector<SongName> songs) {
  const auto music = co_await crate.contents();
  const auto lookUp = [=] {
    std::vector<std::optional<CrateEntry>> entries;
    for (const auto& [song, artist] : songs) {
      const auto* const track = music->find(artist, song);
      entries.push_back(track ? std::optional(CrateAnswer::entry(*track)) : std::nullopt);
    }
    return entries;
  };
  co_return co_await onWorker(platform.mainLoop, lookUp);
}

CrateState AppController::crateState() {
  crate.look();
  return knownOfCrate();
}

CrateState AppController::knownOfCrate() const {
  const auto music = crate.known();
  const auto count = [](std::size_t number) { return static_cast<std::int64_t>(number); };
  CrateState state{.tracks = count(music->tracks.size()),
                   .withoutTempo = count(music->withoutTempo()),
                   .withoutKey = count(music->withoutKey()),
                   .skipped = count(music->skipped.size()),
                   .reading = crate.isReading(),
                   .progress = crate.progressOfReading(),
                   .status = crate.isRead() ? music->status() : "Reading your music",
                   .keys = cratePreferences.keys()};
  for (const auto& source : music->sources)
    state.sources.push_back({source.name, count(source.tracks)});
  return state;
}

Task<void> AppController::showInFileManager(std::string uri) {
  const auto music = co_await crate.contents();
  const std::filesystem::path file = FileAddress::path(uri);
  const auto isIt = [&](const CrateTrack* track) { return track->file == file; };
  if (file.empty() || !std::ranges::any_of(music->tracks, isIt)) {
    throw VelmorError("That file is not in your crate.");
  }
  platform.workspace.showInFileManager(file);
}

void AppController::setCrateKeys(bool count) {
  cratePreferences.setKeys(count);
  crateChanged();
}

void AppController::crateChanged() {
  if (crateListener) crateListener();
  emit(event::crateChanged, knownOfCrate());
}

Task<Crate::Contents> AppController::knownMusic() {
  auto music = co_await crate.contents();
  if (music->tracks.empty()) throw VelmorError(music->status());
  co_return music;
}

Task<Analysis> AppController::askCrate(TrackMetadata current, Crate::Contents music,
                                       AppConfig config) {
  const auto now = std::chrono::floor<std::chrono::seconds>(platform.clock.now());
  const auto rank = [=, keys = cratePreferences.keys()] {
    return CrateAnswer::after(current, *music, config.bpmTolerance, config.recommendationCount,
                              now.time_since_epoch().count(), keys);
  };
  const auto analysis = co_await onWorker(platform.mainLoop, rank);
  // A small crate has fewer than are wanted.
  co_return validateAnalysis(analysis, static_cast<std::int64_t>(analysis.recommendations.size()));
}

} // namespace velmor
