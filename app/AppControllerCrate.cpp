#include "ai/AnalysisValidation.h"
#include "app/AppController.h"
#include "base/VelmorError.h"
#include "crate/CrateAnswer.h"
#include "model/ModelProvider.h"
#include "platform/Clock.h"
#include "platform/async/Waiting.h"

namespace velmor {

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

Task<VisionResult> AppController::suggestAfter(std::string name) {
  const auto music = co_await knownMusic();
  const auto* const track = CrateAnswer::named(name, *music);
  if (!track) {
    throw VelmorError("Your crate has no track with the name \"" + name +
                      "\". Give it as \"Artist - Title\".");
  }
  const auto analysis =
      co_await askCrate(CrateAnswer::metadata(*track), music, configStore->current());
  co_return VisionResult{.currentTrack = analysis.currentTrack,
                         .recommendations = analysis.recommendations,
                         .source = providerName(crateModel),
                         .notice = "Found in your crate."};
}

Task<Crate::Contents> AppController::knownMusic() {
  auto music = co_await crate.contents();
  if (music->tracks.empty()) throw VelmorError(music->status());
  co_return music;
}

Task<Analysis> AppController::askCrate(TrackMetadata current, Crate::Contents music,
                                       AppConfig config) {
  const auto now = std::chrono::floor<std::chrono::seconds>(platform.clock.now());
  const auto rank = [=] {
    return CrateAnswer::after(current, *music, config.bpmTolerance, config.recommendationCount,
                              now.time_since_epoch().count());
  };
  const auto analysis = co_await onWorker(platform.mainLoop, rank);
  // A small crate has fewer than are wanted.
  co_return validateAnalysis(analysis, static_cast<std::int64_t>(analysis.recommendations.size()));
}

} // namespace velmor
