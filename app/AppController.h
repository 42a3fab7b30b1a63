#pragma once

#include "ai/AIClient.h"
#include "app/BuildInfo.h"
#include "model/ConfigStore.h"
#include "nowplaying/NowPlayingDetector.h"
#include "nowplaying/NowPlayingError.h"
#include "platform/TaskGroup.h"
#include "ui/AppCommands.h"
#include "ui/EventSink.h"
#include "update/UpdateService.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace velmor {

/// The application's centre: it owns the services, runs a suggestion from detection to result,
/// watches for track changes, and carries out what the page and the menu ask for.
///
/// Main thread only, except where a lock is named. `stateLock` guards `lastTrack`,
/// `lastAccessibilityNotice` and the cancelling and clearing of `analysisTask`; it is never held
/// across a call into a service, a wait or an event.
class AppController : public AppCommands {
public:
  AppController(const Platform& platform, std::shared_ptr<ConfigStore> configStore);

  /// Where events go from now on.
  void setWebBridge(std::weak_ptr<EventSink> bridge) { webBridge = std::move(bridge); }

  // Suggestions

  /// Finds the playing track and asks the model what to play next. Throws VelmorError with the
  /// sentence for the user.
  [[nodiscard]] Task<VisionResult> suggestTracks() override;

  /// The playing track. Throws VelmorError with the sentence for the user.
  [[nodiscard]] NowPlayingTrack detectTrack();

  /// Occupies the actor lane while it looks.
  [[nodiscard]] bool isRekordboxRunning() const;

  /// The rest of a suggestion, for a track that has been found. Throws what its steps throw.
  [[nodiscard]] Task<VisionResult> analyzeNowPlaying(NowPlayingTrack track);

  /// The track as the page and the model see it.
  [[nodiscard]] static TrackMetadata metadata(const NowPlayingTrack& track);

  [[nodiscard]] AppState getState() override;

  // Automatic detection

  /// Starts polling for the playing track, unless that runs already.
  void startNowPlayingWatcher() override;
  /// Stops polling and forgets the track. No event is sent.
  void stopNowPlayingWatcher();
  void saveSettings(const AppConfig& config) override;
  [[nodiscard]] static bool recommendationSettingsChanged(const AppConfig& previous,
                                                          const AppConfig& next);
  /// "" for a track without title or artist; else the same for every spelling that differs only in
  /// letter case, blanks around it or the way accents are stored.
  [[nodiscard]] static std::string trackFingerprint(const NowPlayingTrack& track);

  // The rest of the commands

  [[nodiscard]] AppConfig settings() const override { return configStore->current(); }
  [[nodiscard]] AppInfo appInfo() override;
  [[nodiscard]] Task<UpdateInfo> checkForUpdate() override;
  void restoreWindow() override;
  void bringToFront() override;
  void minimize() override;
  void openURL(const std::string& url) override;
  void quit() override;

private:
  /// Encodes the payload and pushes the event to the page, while there is one.
  template <typename Payload>
  void emit(const char* event, const Payload& payload);
  void emitPlain(const char* event, const std::optional<std::string>& jsonPayload);

  // The watcher's loop and its reactions.
  [[nodiscard]] Task<void> watch();
  [[nodiscard]] Task<void> poll(int& misses);
  void reportDeniedAccess(const NowPlayingError& error);
  void handleTrackChange(const NowPlayingTrack& track);
  void handleTrackStopped();
  [[nodiscard]] Task<void> suggestFor(NowPlayingTrack track, std::string fingerprint);
  [[nodiscard]] Task<void> tellStopped();
  [[nodiscard]] bool isCurrent(const std::string& fingerprint);

  Platform platform;
  std::weak_ptr<EventSink> webBridge;
  const std::shared_ptr<ConfigStore> configStore;
  BuildInfo buildInfo;
  /// Shared with a check under way, which may end after the controller.
  const std::shared_ptr<const UpdateService> updateService;
  AIClient aiClient;
  NowPlayingDetector nowPlaying;
  std::optional<TaskHandle> watchTask;
  std::optional<TaskHandle> analysisTask;
  std::string lastTrack;
  std::string lastAccessibilityNotice;
  std::mutex stateLock;
  /// Last, so that the tasks, which use all of the above, end first.
  TaskGroup tasks;
};

} // namespace velmor
