#pragma once

#include "model/AppConfig.h"
#include "model/CrateRecords.h"
#include "model/Records.h"
#include "platform/async/Task.h"
#include "ui/EventSink.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

class VelmorWindow;

/// What the page may ask the application to do. Main thread only. Every failure is an exception
/// whose text is a sentence that the page shows.
class AppCommands {
public:
  virtual ~AppCommands() = default;

  [[nodiscard]] virtual AppConfig settings() const = 0;
  /// Keeps the settings, each value brought into its range, and starts or stops the watcher as they
  /// say. Throws when they cannot be written; the old ones hold then.
  virtual void saveSettings(const AppConfig& config) = 0;

  [[nodiscard]] virtual AppInfo appInfo() = 0;
  [[nodiscard]] virtual Task<AppState> getState() = 0;
  /// Asks the version server. A failure is told in the answer.
  [[nodiscard]] virtual Task<UpdateInfo> checkForUpdate() = 0;

  /// Starts to look for the playing track over and over, unless that runs already.
  virtual void startNowPlayingWatcher() = 0;
  /// Stops that, and a suggestion that it has begun.
  virtual void stopNowPlayingWatcher() = 0;
  /// Finds the playing track and asks the model what to play next. The task throws.
  [[nodiscard]] virtual Task<VisionResult> suggestTracks() = 0;

  /// The track that a suggestion has found last; nothing before the first.
  [[nodiscard]] virtual std::optional<TrackMetadata> detectedTrack() const = 0;

  // The DJ's own music.
  /// What is known now. Begins to read the music, unless that has been done.
  [[nodiscard]] virtual CrateState crateState() = 0;
  /// What the crate has of each song, in their order; nothing for a song that it lacks.
  [[nodiscard]] virtual Task<std::vector<std::optional<CrateEntry>>>
  lookUpInCrate(std::vector<SongName> songs) = 0;
  /// Suggestions from the crate after one of its songs. The task throws when it has no such song.
  [[nodiscard]] virtual Task<VisionResult> suggestAfter(SongName song) = 0;
  /// Opens the file manager at a file of the crate. The task throws for any other address.
  [[nodiscard]] virtual Task<void> showInFileManager(std::string uri) = 0;
  /// Whether keys count from now on when the crate is ranked. Throws when that cannot be stored.
  virtual void setCrateKeys(bool count) = 0;

  // What needs a window does nothing without one.
  /// From the compact square back to the full window.
  virtual void restoreWindow() = 0;
  virtual void bringToFront() = 0;
  virtual void minimize() = 0;

  /// Opens the address outside Velmor. A text that is no URL does nothing.
  virtual void openURL(const std::string& url) = 0;
  virtual void quit() = 0;
};

/// The application as its main window sees it. Main thread only.
class MainWindowOwner : public AppCommands {
public:
  /// Where events go from now on.
  virtual void setWebBridge(std::weak_ptr<EventSink> bridge) = 0;
  virtual void setMainWindow(std::weak_ptr<VelmorWindow> window) = 0;

  /// Puts the main window in its place and shows it.
  virtual void configureWindow(VelmorWindow& window) = 0;
  /// The main window is closing; it can still be asked about itself.
  virtual void shutdown(VelmorWindow& window) = 0;
};

} // namespace velmor
