#pragma once

#include "model/Records.h"
#include "platform/Platform.h"
#include "platform/PlayerScript.h"

#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// Runs a script with the system's script tool, or has the backend answer where there is none.
/// Gives the trimmed answer; "" when the script failed, and then writes the reason to the log.
/// `permissionLabel` names the player in the refusal that the user reads. Throws
/// NowPlayingError::automationDenied, or LaunchError when the tool could not be started.
[[nodiscard]] std::string runAppleScript(const Platform& platform, const PlayerScript& script,
                                         const std::optional<std::string>& permissionLabel);

/// Asks a media player that answers scripts about its track. Stateless; any thread.
class StreamingAppDetector {
public:
  /// The players that are asked, by the name of application and process alike.
  static constexpr auto spotify = "Spotify";
  static constexpr auto music = "Music";

  /// The track that the player plays, under the given labels; nothing when none of its processes
  /// runs or it does not play. Throws what `runAppleScript` throws.
  [[nodiscard]] static std::optional<NowPlayingTrack>
  current(const Platform& platform, const std::string& appName,
          const std::vector<std::string>& processNames, const std::string& source,
          const std::string& detection);

  /// True when the player says that it is paused. Ask only a player that runs. Never throws.
  [[nodiscard]] static bool isPaused(const Platform& platform, const std::string& appName);
};

} // namespace velmor
