#pragma once

#include "model/AppConfig.h"
#include "model/Records.h"
#include "platform/async/Task.h"

#include <string>

namespace velmor {

/// What the page may ask the application to do. Main thread only; a failure is an exception whose
/// text the page shows.
class AppCommands {
public:
  virtual ~AppCommands() = default;

  [[nodiscard]] virtual AppConfig settings() const = 0;
  virtual void saveSettings(const AppConfig& config) = 0;
  [[nodiscard]] virtual AppInfo appInfo() = 0;
  [[nodiscard]] virtual Task<UpdateInfo> checkForUpdate() = 0;
  [[nodiscard]] virtual Task<AppState> getState() = 0;
  virtual void startNowPlayingWatcher() = 0;
  [[nodiscard]] virtual Task<VisionResult> suggestTracks() = 0;
  virtual void restoreWindow() = 0;
  virtual void bringToFront() = 0;
  virtual void quit() = 0;
  virtual void minimize() = 0;
  virtual void openURL(const std::string& url) = 0;
};

} // namespace velmor
