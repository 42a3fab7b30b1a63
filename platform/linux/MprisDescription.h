#pragma once

#include "platform/MediaRemote.h"
#include "platform/linux/MprisPlayer.h"

#include <string_view>

namespace velmor {

/// The player's session under the system's keys, for what it has said.
[[nodiscard]] NowPlayingInfo nowPlayingInfo(const MprisPlayer& player);

/// The identity by which a program goes that is known elsewhere under another one; else the
/// desktop entry, else the bus name's own part without an instance.
[[nodiscard]] std::string bundleIdentifier(const MprisPlayer& player);

/// Whether people call the player by this name, in any letter case.
[[nodiscard]] bool goesByName(const MprisPlayer& player, std::string_view name);

} // namespace velmor
