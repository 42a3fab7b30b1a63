#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmor {

class Environment;
class ProcessLauncher;

/// The server that plays the user's sound (PulseAudio, or PipeWire in its place), as programs of
/// this session would reach it. Any thread.
class SoundServer {
public:
  /// Its address, such as "unix:/run/user/1000/pulse/native"; nothing when nobody says where it
  /// could be.
  [[nodiscard]] static std::optional<std::string> address(const Environment& environment);

  /// Whether somebody listens there; waits for up to two seconds. Nothing is sent, and no server is
  /// started.
  [[nodiscard]] static bool answers(const std::string& address);

  /// The monitors of the sound outputs that exist, by the server's own names; none when there is no
  /// server. Runs a child.
  [[nodiscard]] static std::vector<std::string> outputMonitors(ProcessLauncher& processes);
};

} // namespace velmor
