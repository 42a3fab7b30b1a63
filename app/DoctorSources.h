#pragma once

#include "app/Doctor.h"
#include "platform/Platform.h"

#include <vector>

namespace velmor {

/// Checks each source of tracks with the functions that read it. Stateless.
struct DoctorSources {
  struct Result {
    /// In the order in which Velmor asks the sources.
    std::vector<DoctorFinding> findings;
    bool trackCanBeFound = false;
  };

  /// Asks all sources, which may take some seconds. Never throws. Any thread but that of the main
  /// loop, which the media session needs for its answers.
  [[nodiscard]] static Result examine(const Platform& platform);
};

} // namespace velmor
