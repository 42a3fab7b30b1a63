#pragma once

#include "platform/MediaRemote.h"

namespace velmor {

class MprisBusSource;

/// The now-playing session of a Linux desktop: the media players on the session bus.
class MprisMediaRemote final : public MediaRemote {
public:
  explicit MprisMediaRemote(MprisBusSource& mprisBuses);

  /// Null when there is no session bus.
  [[nodiscard]] std::unique_ptr<MediaRemoteSession> open() override;

private:
  MprisBusSource& buses;
};

} // namespace velmor
