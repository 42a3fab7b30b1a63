#pragma once

#include "platform/linux/MprisBus.h"

namespace velmor {

class Environment;

/// The one reading side of the media players on the user's session bus, shared by all who ask: it
/// remembers who hung and who began to play. Any thread.
class MprisBusSource {
public:
  /// `quitToken` ends every reading at once.
  MprisBusSource(const Environment& theEnvironment, std::stop_token quitToken);

  /// Null when there is no session bus.
  [[nodiscard]] std::shared_ptr<MprisBus> current();

private:
  const Environment& environment;
  std::stop_token quit;
  std::mutex lock;
  std::shared_ptr<MprisBus> bus;
};

} // namespace velmor
