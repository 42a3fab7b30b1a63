#pragma once

#include "platform/MediaRemote.h"
#include "platform/linux/MprisBus.h"

namespace velmor {

class Environment;

/// The now-playing session of a Linux desktop: the media players on the session bus.
class MprisMediaRemote final : public MediaRemote {
public:
  /// `quitToken` ends every query at once.
  MprisMediaRemote(const Environment& theEnvironment, std::stop_token quitToken);

  /// Null when there is no session bus.
  [[nodiscard]] std::unique_ptr<MediaRemoteSession> open() override;

private:
  const Environment& environment;
  std::stop_token quit;
  std::mutex lock;
  std::shared_ptr<MprisBus> bus;
};

} // namespace velmor
