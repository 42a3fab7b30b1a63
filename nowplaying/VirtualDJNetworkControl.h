#pragma once

#include "model/Records.h"
#include "platform/Platform.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// The text with every byte encoded as %XX that is neither a letter, a digit, one of "-._~" nor in
/// `allowed`.
[[nodiscard]] std::string percentEncoded(std::string_view text, std::string_view allowed);

/// VirtualDJ's network control: a small HTTP service on a port of the user's choice, found among
/// those on which VirtualDJ listens. Stateless; any thread.
class VirtualDJNetworkControl {
public:
  static constexpr auto processName = "virtualdj";

  /// The ports on which VirtualDJ listens on this machine, in ascending order.
  [[nodiscard]] static std::vector<std::int64_t> listeningPorts(const Platform& platform);

  /// The ports in what lsof printed.
  [[nodiscard]] static std::vector<std::int64_t> parsePorts(std::string_view lsofOutput);

  /// The track on the master deck, if it plays and is heard. Throws TransportError or
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack queryNetworkControl(const Platform& platform,
                                                           std::int64_t port);
};

} // namespace velmor
