#pragma once

#include "platform/ProcessLauncher.h"

#include <string>

namespace velmor {

/// Runs a script that asks a media player about its state.
class ScriptHost {
public:
  virtual ~ScriptHost() = default;

  /// Runs the script to its end and returns its exit status, output and error output.
  /// `permissionLabel` names, for the user, whom the script wants to ask. Any thread.
  /// Throws LaunchError when the script could not be run or handed over.
  [[nodiscard]] virtual ChildResult run(const std::string& script,
                                        const std::string& permissionLabel) = 0;
};

} // namespace velmor
