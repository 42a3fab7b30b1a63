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

  /// Asks all sources, which may block the calling thread for some seconds. Never throws.
  [[nodiscard]] static Result examine(const Platform& platform);
};

} // namespace velmor
