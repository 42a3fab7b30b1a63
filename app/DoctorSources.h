#pragma once

#include "app/Doctor.h"
#include "platform/Platform.h"

#include <vector>

namespace velmor {

/// Looks at each place that tracks are read from, with the readers' own means. Stateless.
struct DoctorSources {
  struct Result {
    /// In the order of detection.
    std::vector<DoctorFinding> findings;
    bool trackCanBeFound = false;
  };

  /// Never throws. Must not run where the media session's answer would have to come.
  [[nodiscard]] static Result examine(const Platform& platform);

  [[nodiscard]] static DoctorFinding mixxx(const Platform& platform);
  [[nodiscard]] static DoctorFinding rekordbox(const Platform& platform);
  [[nodiscard]] static DoctorFinding djay(const Platform& platform);
  [[nodiscard]] static DoctorFinding player(const Platform& platform, const std::string& name);
  [[nodiscard]] static DoctorFinding mediaSession(const Platform& platform);
  [[nodiscard]] static DoctorFinding virtualDJ(const Platform& platform);
  [[nodiscard]] static DoctorFinding serato(const Platform& platform);
};

} // namespace velmor
