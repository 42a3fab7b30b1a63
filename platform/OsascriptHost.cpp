#include "platform/OsascriptHost.h"

#include <utility>

namespace velmor {

OsascriptHost::OsascriptHost(ProcessLauncher& launcher, std::string executable)
    : processes(launcher), tool(std::move(executable)) {}

ChildResult OsascriptHost::run(const std::string& script, const std::string&) {
  // The script is no argument: other programs of this machine can read those.
  return processes.run({.executable = tool, .arguments = {"-"}, .input = script});
}

} // namespace velmor
