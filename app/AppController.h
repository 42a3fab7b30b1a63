#pragma once

#include "ai/AIClient.h"
#include "app/BuildInfo.h"
#include "base/Json.h"
#include "crate/Crate.h"
#include "model/ConfigStore.h"
#include "model/CratePreferences.h"
#include "nowplaying/NowPlayingDetector.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "platform/async/TaskGroup.h"
#include "streams/TrackChanges.h"
#include "ui/MainWindowOwner.h"
#include "ui/WindowModeManager.h"
#include "update/UpdateService.h"

#include <memory>
#include <optional>
#include <string>

namespace velmor {

/// The application's centre: it owns the services, runs a suggestion from detection to result,
/// watches for track changes, and carries out what the page and the menu ask for.
///
/// Main thread only. Detection and listening block: they run on a worker that occupies the actor
/// lane, so that no other command or task comes between.
class AppController : public MainWindowOwner {
public:
  /// Without a desktop there is no window: what concerns it does nothing.
  AppController(const Platform& platform, std::shared_ptr<ConfigStore> configStore,
                std::optional<Desktop> desktop = std::nullopt);

  void setWebBridge(std::weak_ptr<EventSink> bridge) override { webBridge = std::move(bridge); }

  // Suggestions

  /// Finds the playing track, measures it when an extractor is installed, and asks the model what
  /// to play next. Throws VelmorError with the sentence for the user.
  [[nodiscard]] Task<VisionResult> suggestTracks() override;

  /// Throws VelmorError with the sentence for the user when the model has no key.
  void requireKey() const;

  /// The rest of `suggestTracks`, for a track that has been found. Throws likewise.
  [[nodiscard]] Task<VisionResult> suggestTracksAfter(NowPlayingTrack track);

  /// The playing track. Looks twice for rekordbox's when nobody has looked for a while. Throws
  /// VelmorError with the sentence for the user.
  [[nodiscard]] Task<NowPlayingTrack> detectTrack();

  /// The rest of a suggestion, for a track that has been found. Throws VelmorError or what the
  /// model's client throws.
  [[nodiscard]] Task<VisionResult> analyzeNowPlaying(NowPlayingTrack track);

  [[nodiscard]] std::optional<TrackMetadata> detectedTrack() const override { return detected; }

  // The DJ's own music

  /// As `suggestTracks`, from the crate whatever the model is.
  [[nodiscard]] Task<VisionResult> suggestFromCrate();
  /// Suggestions from the crate after the track that is named as "Artist - Title". Throws
  /// VelmorError when the crate has no such track.
  [[nodiscard]] Task<VisionResult> suggestAfterNamed(std::string name);
  [[nodiscard]] Task<VisionResult> suggestAfter(SongName song) override;
  [[nodiscard]] Task<std::vector<std::optional<CrateEntry>>>
  lookUpInCrate(std::vector<SongName> songs) override;
  [[nodiscard]] CrateState crateState() override;
  /// The same, and begins nothing.
  [[nodiscard]] CrateState knownOfCrate() const;
  [[nodiscard]] Task<void> showInFileManager(std::string uri) override;
  void setCrateKeys(bool count) override;
  /// All music that was found. Never null.
  [[nodiscard]] Task<Crate::Contents> crateContents() { return crate.contents(); }
  /// Calls `work` when a reading of the music begins, goes on or has ended.
  void whenCrateChanges(MainLoop::Work work) { crateListener = std::move(work); }

  [[nodiscard]] Task<AppState> getState() override;

  // Automatic detection

  /// Starts polling for the playing track, unless that runs already.
  void startNowPlayingWatcher() override;
  /// Stops polling and forgets the track. No event is sent.
  void stopNowPlayingWatcher() override;
  /// Saves, and starts, stops or begins anew with the watcher as the settings say. Throws
  /// FileError; nothing has changed then.
  void saveSettings(const AppConfig& config) override;
  /// True when a suggestion made with the one would not do for the other.
  [[nodiscard]] static bool recommendationSettingsChanged(const AppConfig& previous,
                                                          const AppConfig& next);
  /// Lets others hear what each look of the watcher saw, and each ranking that was made.
  void setListeners(std::function<void(const TrackLook&)> onLook,
                    std::function<void(const VisionResult&)> onSuggestions);
  /// Lets the watcher look for the listeners too, while the automatic detection is off.
  void lookForListeners(bool wanted);

  // The window

  void setMainWindow(std::weak_ptr<VelmorWindow> window) override {
    mainWindow = std::move(window);
  }
  void configureWindow(VelmorWindow& window) override;
  void shutdown(VelmorWindow& window) override;
  /// Saves where the window was seen last; for when it cannot be asked any more.
  void saveLastSeenFrame();
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
  /// The model needs a key that nobody has entered.
  [[nodiscard]] bool isKeyMissing(const std::string& model) const;
  /// The rest of a suggestion with these settings.
  [[nodiscard]] Task<VisionResult> analyze(NowPlayingTrack track, AppConfig config);
  [[nodiscard]] AIClient::Request modelRequest(TrackMetadata current, std::string source,
                                               const AppConfig& config) const;
  /// Never empty. Throws VelmorError when there is no music.
  [[nodiscard]] Task<Crate::Contents> knownMusic();
  [[nodiscard]] Task<Analysis> askCrate(TrackMetadata current, Crate::Contents music,
                                        AppConfig config);
  [[nodiscard]] Task<VisionResult> suggestAfterTrack(const CrateTrack* track,
                                                     Crate::Contents music);
  void crateChanged();
  /// The track as the page and the model see it.
  [[nodiscard]] static TrackMetadata metadata(const NowPlayingTrack& track);

  /// Encodes the payload and pushes the event to the page, while there is one. A payload that has
  /// no JSON form arrives as null.
  template <typename Payload>
  void emit(const char* event, const Payload& payload) {
    std::optional<std::string> json;
    try {
      json = jsonEncoder().encode(payload);
    } catch (const EncodingError&) {
      // The page still hears of the event, with nothing in it.
    }
    emitPlain(event, json);
  }
  void emitPlain(const char* event, const std::optional<std::string>& jsonPayload);

  // The watcher's loop and its reactions.
  [[nodiscard]] Task<void> watch();
  [[nodiscard]] Task<void> poll(int& misses);
  void startLooking();
  void stopLookingWhenUnwanted();
  void reportDeniedAccess(const std::string& notice);
  void handleTrackChange(const NowPlayingTrack& track);
  void handleTrackStopped();
  [[nodiscard]] Task<void> suggestFor(NowPlayingTrack track, std::string fingerprint);
  [[nodiscard]] Task<void> tellStopped();
  /// Cancels the automatic suggestion, if there is one, and forgets the track.
  void forgetTrack();

  // The window.
  /// Centres the window, and saves that, when hardly anything of it is on a screen.
  void ensureWindowIsVisible(VelmorWindow& window);
  void keepTopInSight(Window& native) const;
  void compactModeChanged(bool compact);
  /// Failures go to the log.
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
  Crate crate;
  CratePreferences cratePreferences;
  MainLoop::Work crateListener;
  /// Shared with a look under way, which may end after the controller.
  const std::shared_ptr<NowPlayingDetector> nowPlaying;
  /// Null without a desktop.
  std::shared_ptr<WindowModeManager> windowMode;
  std::optional<TaskHandle> watchTask;
  /// Who wants the watcher to look.
  bool isAutomatic = false;
  bool hasListeners = false;
  std::function<void(const TrackLook&)> lookListener;
  std::function<void(const VisionResult&)> suggestionListener;
  // There is no stateLock: only the main thread touches what it would guard.
  std::optional<TaskHandle> analysisTask;
  /// The fingerprint of the track that the page knows of; "" for none.
  std::string lastTrack;
  /// What a suggestion of the user's has found last.
  std::optional<TrackMetadata> detected;
  /// The last such sentence that the page was told.
  std::string lastAccessibilityNotice;
  /// Last, so that the tasks, which use all of the above, end first.
  TaskGroup tasks;
};

} // namespace velmor
