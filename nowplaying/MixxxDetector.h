#pragma once

#include "model/Records.h"
#include "platform/Platform.h"
#include "platform/RunningApplications.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// Finds Mixxx's track in its window title, completed from its library, or without a title in its
/// set log. Stateless; any thread.
class MixxxDetector {
public:
  /// Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  [[nodiscard]] static bool isRunning(const Platform& platform);

  [[nodiscard]] static std::optional<RunningApplication> mixxxApplication(const Platform& platform);

  /// The trimmed title of a window that shows a playing track, as Accessibility gives it.
  [[nodiscard]] static std::optional<std::string>
  accessibilityWindowTitle(const Platform& platform);

  /// The same from the list of windows on screen.
  [[nodiscard]] static std::optional<std::string> cgWindowTitle(const Platform& platform);

  /// What the title shows, normally "Artist - Title"; nothing when it shows no track.
  [[nodiscard]] static std::optional<std::string> displayText(std::string_view windowTitle);
};

} // namespace velmor
