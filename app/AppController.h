#pragma once

#include "ai/AIClient.h"
#include "app/BuildInfo.h"
#include "model/ConfigStore.h"
#include "nowplaying/NowPlayingDetector.h"
#include "nowplaying/NowPlayingError.h"
#include "platform/Desktop.h"
#include "platform/async/TaskGroup.h"
#include "ui/MainWindowOwner.h"
#include "ui/WindowModeManager.h"
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
class AppController : public MainWindowOwner {
public:
  /// Without a desktop there is no window: what concerns it does nothing.
  AppController(const Platform& platform, std::shared_ptr<ConfigStore> configStore,
                std::optional<Desktop> desktop = std::nullopt);

  void setWebBridge(std::weak_ptr<EventSink> bridge) override { webBridge = std::move(bridge); }

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

  // The window

  void setMainWindow(std::weak_ptr<VelmorWindow> window) override {
    mainWindow = std::move(window);
  }
  void configureWindow(VelmorWindow& window) override;
  void shutdown(VelmorWindow& window) override;
  /// Back to the saved place; to the middle of the screen when none has been saved.
  static void applySavedWindowFrame(const WindowSettings& saved, VelmorWindow& window);
  /// Centres the window, and saves that, when hardly anything of it is on a screen.
  void ensureWindowIsVisible(VelmorWindow& window);
  void restoreWindow() override;
  void bringToFront() override;
  void minimize() override;

  // The rest of the commands

  [[nodiscard]] AppConfig settings() const override { return configStore->current(); }
  [[nodiscard]] AppInfo appInfo() override;
  [[nodiscard]] Task<UpdateInfo> checkForUpdate() override;
  void showAbout();
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

  void compactModeChanged(bool compact);
  /// Failures are ignored.
  void saveWindow(const WindowSettings& window);

  Platform platform;
  const std::optional<Desktop> desktop;
  std::weak_ptr<EventSink> webBridge;
  std::weak_ptr<VelmorWindow> mainWindow;
  const std::shared_ptr<ConfigStore> configStore;
  BuildInfo buildInfo;
  /// Shared with a check under way, which may end after the controller.
  const std::shared_ptr<const UpdateService> updateService;
  AIClient aiClient;
  NowPlayingDetector nowPlaying;
  /// Null without a desktop.
  std::shared_ptr<WindowModeManager> windowMode;
  std::optional<TaskHandle> watchTask;
  std::optional<TaskHandle> analysisTask;
  std::string lastTrack;
  std::string lastAccessibilityNotice;
  std::mutex stateLock;
  /// Last, so that the tasks, which use all of the above, end first.
  TaskGroup tasks;
};

} // namespace velmor
