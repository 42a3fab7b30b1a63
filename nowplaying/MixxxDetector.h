#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// Finds Mixxx's track in the title of its window and completes it from Mixxx's library. Without
/// such a title the track comes from Mixxx's log of the set. Stateless; any thread.
class MixxxDetector {
public:
  /// The playing track. Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  /// True while Mixxx is among the running processes or applications.
  [[nodiscard]] static bool isRunning(const Platform& platform);

  /// The trimmed title of the first window that shows a track, as the accessibility interface gives
  /// it; nothing when there is none or windows may not be read.
  [[nodiscard]] static std::optional<std::string>
  accessibilityWindowTitle(const Platform& platform);

  /// The same from the list of windows on screen.
  [[nodiscard]] static std::optional<std::string> cgWindowTitle(const Platform& platform);

  /// The part of a window's title that names the track, normally "Artist - Title"; nothing when the
  /// title names no track.
  [[nodiscard]] static std::optional<std::string> displayText(std::string_view windowTitle);
};

} // namespace velmor
