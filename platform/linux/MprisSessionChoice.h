#pragma once

#include "platform/linux/MprisPlayer.h"

#include <vector>

namespace velmor {

/// The player whose session is the system's: one that plays and says what, else one that plays,
/// else one that is paused and says with what. Among equals it is the one that began to play last,
/// then the first by bus name. A process with several names says the same under each, so that
/// which of them is chosen makes no difference. Null when nothing plays or is paused.
[[nodiscard]] const MprisPlayer* chosenSession(const std::vector<MprisPlayer>& players);

/// True for the name of a player, not of a mirror of other players.
[[nodiscard]] bool isPlayerName(const std::string& busName);

} // namespace velmor
