#pragma once

#include "platform/ScriptHost.h"

namespace velmor {

/// Runs scripts with the system's own script tool. The tool asks the user for permission itself.
class OsascriptHost : public ScriptHost {
public:
  /// `executable` is the tool's path.
  explicit OsascriptHost(ProcessLauncher& launcher, std::string executable = "/usr/bin/osascript");

  [[nodiscard]] ChildResult run(const std::string& script,
                                const std::string& permissionLabel) override;

private:
  ProcessLauncher& processes;
  std::string tool;
};

} // namespace velmor
