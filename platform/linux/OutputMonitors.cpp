#include "platform/linux/OutputMonitors.h"

#include "platform/ProcessLauncher.h"

#include <sstream>

namespace velmor {

namespace {

/// One output a line, with tabs between number, name and what else there is to know.
std::string listing(ProcessLauncher& processes) {
  try {
    return processes.run({"/usr/bin/pactl", {"list", "short", "sinks"}}).output;
  } catch (const LaunchError&) {
    return "";
  }
}

} // namespace

std::vector<std::string> outputMonitors(ProcessLauncher& processes) {
  std::istringstream outputs(listing(processes));
  std::vector<std::string> monitors;
  std::string number;
  std::string name;
  std::string rest;
  // Going by the outputs leaves no way for a microphone to get into the list of sources.
  while (std::getline(outputs, number, '\t') && std::getline(outputs, name, '\t') &&
         std::getline(outputs, rest)) {
    monitors.push_back(name + ".monitor");
  }
  return monitors;
}

} // namespace velmor
