#pragma once

#include "platform/ScriptHost.h"

namespace velmor {

class MprisBusSource;
struct MprisPlayer;

/// Answers the scripts that media players are asked with on behalf of the player of that name on
/// the session bus. It knows these scripts by their whole text and fails for any other, as it
/// does when the player is not there or does not answer.
class MprisScriptHost final : public ScriptHost {
public:
  explicit MprisScriptHost(MprisBusSource& mprisBuses);

  /// Never throws: there is no program to be launched. Nobody has to be asked for permission.
  ChildResult run(const std::string& script, const std::string& permissionLabel) override;

private:
  MprisBusSource& buses;
};

} // namespace velmor
