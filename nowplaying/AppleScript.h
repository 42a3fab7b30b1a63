#pragma once

#include "platform/Platform.h"

#include <optional>
#include <string>

namespace velmor {

/// Runs a script that asks a media player and returns its trimmed answer, "" when the script
/// failed. `permissionLabel` names the player in the refusal that the user reads. Throws
/// NowPlayingError::automationDenied, or LaunchError when the script could not be run.
[[nodiscard]] std::string runAppleScript(const Platform& platform, const std::string& script,
                                         const std::optional<std::string>& permissionLabel);

} // namespace velmor
