#pragma once

#include "platform/PlayerScript.h"
#include "platform/ProcessLauncher.h"

#include <string>

namespace velmor {

class MprisBusSource;
struct MprisPlayer;

/// What the player says to the question.
[[nodiscard]] std::string answerOf(const MprisPlayer& player, PlayerScript::Question question);

/// Asks the player of the script's application on the session bus, in place of running the script.
/// Fails with exit status 1 when the player is not there or does not answer; with a message the
/// first time, until it answers again. Any thread; waits for up to two seconds.
[[nodiscard]] ChildResult answerScript(const PlayerScript& script, MprisBusSource& buses);

} // namespace velmor
