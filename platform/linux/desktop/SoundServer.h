#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmor {

class ProcessLauncher;

/// The monitors of the sound outputs that exist, as the sound server (PulseAudio, or PipeWire in
/// its place) names them; none when there is no server. Runs a child; any thread.
[[nodiscard]] std::vector<std::string> outputMonitors(ProcessLauncher& processes);

class Environment;

/// The server that plays the user's sound, as programs of this session would reach it.
class SoundServer {
public:
  /// Its address, such as "unix:/run/user/1000/pulse/native"; nothing when nobody says where it
  /// could be.
  [[nodiscard]] static std::optional<std::string> address(const Environment& environment);

  /// Whether somebody listens there. Nothing is sent, and no server is started.
  [[nodiscard]] static bool answers(const std::string& address);
};

} // namespace velmor
