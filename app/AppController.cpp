#include "app/AppController.h"

#include "analysis/AudioAnalysisService.h"
#include "analysis/WorkingFolder.h"
#include "app/crate/MusicPlaces.h"
#include "model/ModelProvider.h"
#include "platform/Workspace.h"
#include "platform/async/Waiting.h"

namespace velmor {

AppController::AppController(const Platform& thePlatform, std::shared_ptr<ConfigStore> store,
                             std::optional<Desktop> theDesktop)
    : platform(thePlatform)
    , desktop(theDesktop)
    , configStore(std::move(store))
    , buildInfo(platform)
    , updateService(std::make_shared<UpdateService>(platform, "macos", buildInfo.version()))
    , aiClient(platform, ProviderEndpoint::of(platform, ModelProvider::Tinker),
               ProviderEndpoint::of(platform, ModelProvider::OpenAI))
    , crate(platform, [system = platform] { return placesOfMusic(system); })
    , cratePreferences(platform)
    , nowPlaying(std::make_shared<NowPlayingDetector>(platform))
    , tasks(platform.mainLoop) {
  WorkingFolder::removeAbandoned(platform);
  crate.whenChanged([this] { crateChanged(); });
  if (desktop) {
    windowMode = std::make_shared<WindowModeManager>(platform.mainLoop, desktop->windows);
  }
}

Task<AppState> AppController::getState() {
  const auto model = configStore->current().aiModel;
  const bool isCrate = modelProvider(model) == ModelProvider::Crate;
  AppState state;
  if (isCrate) {
    const auto music = co_await crate.contents();
    state.aiAvailable = !music->tracks.empty();
    state.provider = music->status();
  } else {
    state.aiAvailable = !configStore->apiKey(model).empty();
    state.provider =
        state.aiAvailable ? providerName(model) + " recommendations ready" : "API key required";
  }
  const auto isExtractorThere = [system = platform] {
    return AudioAnalysisService::extractorPath(system).has_value();
  };
  state.essentiaAvailable = co_await occupied(platform.mainLoop, isExtractorThere);
  co_return state;
}

AppInfo AppController::appInfo() {
  return {.version = buildInfo.version(), .buildDate = buildInfo.buildDate()};
}

Task<UpdateInfo> AppController::checkForUpdate() {
  const auto check = [service = updateService] { return service->check(); };
  co_return co_await onWorker(platform.mainLoop, check);
}

void AppController::showAbout() {
  emitPlain(event::showAbout, std::nullopt);
}

void AppController::openURL(const std::string& url) {
  platform.workspace.openURL(url);
}

void AppController::quit() {
  platform.workspace.terminate();
}

void AppController::emitPlain(const char* event, const std::optional<std::string>& jsonPayload) {
  if (platform.workspace.isTerminating()) return;
  if (const auto bridge = webBridge.lock()) bridge->emit(event, jsonPayload);
}

} // namespace velmor
