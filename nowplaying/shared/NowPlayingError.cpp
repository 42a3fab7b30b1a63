#include "nowplaying/shared/NowPlayingError.h"

namespace velmor {

NowPlayingError NowPlayingError::automationDenied(const std::string& app) {
  return {Case::automationDenied,
          "Velmor needs Automation permission for " + app +
              ". Allow it in System Settings → Privacy & Security → Automation, then try again."};
}

NowPlayingError NowPlayingError::accessibilityDenied(const std::string& app) {
  return {Case::accessibilityDenied,
          "Velmor needs Accessibility access for " + app +
              ". In System Settings → Privacy & Security → Accessibility, remove and re-enable "
              "Velmor, then restart from ~/Applications/Velmor.app."};
}

NowPlayingError NowPlayingError::playbackPaused(const std::string& app) {
  return {Case::playbackPaused, app + " is paused. Start playback and try again."};
}

NowPlayingError NowPlayingError::noActiveSession() {
  return {Case::noActiveSession, "No active media session found. Start playback in a supported "
                                 "DJ app, then try again."};
}

} // namespace velmor
