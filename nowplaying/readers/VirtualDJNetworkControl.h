#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace velmor {

/// VirtualDJ's Network Control plugin: a small HTTP service on a port that the user chooses. Velmor
/// tries each port on which VirtualDJ listens. Stateless; any thread.
class VirtualDJNetworkControl {
public:
  /// VirtualDJ's process, as `ProcessUtils` is asked for it.
  static constexpr auto processName = "virtualdj";

  /// The ports on which VirtualDJ listens on this machine, in ascending order; none when lsof
  /// cannot be started. Runs two child processes to their end.
  [[nodiscard]] static std::vector<std::int64_t> listeningPorts(const Platform& platform);

  /// The ports in a table that lsof printed, each once and in ascending order; none when the text
  /// is not UTF-8.
  [[nodiscard]] static std::vector<std::int64_t> parsePorts(std::string_view lsofOutput);

  /// The track on the master deck, when it plays and can be heard. Waits up to a second. Throws
  /// TransportError when nobody answers, NowPlayingError::noActiveSession for any other answer.
  [[nodiscard]] static NowPlayingTrack queryNetworkControl(const Platform& platform,
                                                           std::int64_t port);
};

} // namespace velmor
