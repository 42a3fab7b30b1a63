#pragma once

#include <string>
#include <vector>

namespace velmor {

class ProcessLauncher;

/// The monitors of the sound outputs that exist, as the sound server (PulseAudio, or PipeWire in
/// its place) names them; none when there is no server. Runs a child; any thread.
[[nodiscard]] std::vector<std::string> outputMonitors(ProcessLauncher& processes);

} // namespace velmor
