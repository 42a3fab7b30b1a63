#pragma once

#include "app/Doctor.h"
#include "platform/Platform.h"

#include <string>
#include <vector>

namespace velmor {

/// What doctor tries out when it is told to, since it costs money or time. Stateless; each blocks
/// its thread, never throws, and may run on any thread.
struct DoctorTrials {
  /// What `ask` and `listen` are about to do, a sentence and a line feed; "" when there is no key
  /// to ask with.
  [[nodiscard]] static std::string announcementOfAsking(const Platform& platform);
  static constexpr auto announcementOfListening =
      "Recording five seconds of what this computer plays. Nobody else gets the recording, and it "
      "is deleted at once.\n";

  /// Sends the provider one small request, which tells whether it can be reached and takes the key
  /// and the model. Takes half a minute at most.
  [[nodiscard]] static std::vector<DoctorFinding> ask(const Platform& platform);

  /// Records and measures five seconds: the device and its level, and what the extractor says.
  [[nodiscard]] static std::vector<DoctorFinding> listen(const Platform& platform);
};

} // namespace velmor
