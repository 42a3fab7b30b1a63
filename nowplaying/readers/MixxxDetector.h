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

  /// What the window says of the track, as `displayText` gives it. Each instance is asked through
  /// the accessibility interface, else looked up in the list of windows; of several that show a
  /// track it is the one whose window is in front. Nothing when none shows one.
  [[nodiscard]] static std::optional<std::string> displayedTrack(const Platform& platform);

  /// The part of a window's title that names the track, normally "Artist - Title"; nothing when the
  /// title names no track.
  [[nodiscard]] static std::optional<std::string> displayText(std::string_view windowTitle);
};

} // namespace velmor
