#pragma once

#include "app/DoctorReport.h"
#include "platform/Platform.h"

namespace velmor {

class SystemStatus;

/// Finds out why Velmor does not name a track or suggest anything on this machine.
class Doctor {
public:
  Doctor(const Platform& thePlatform, SystemStatus& theStatus)
      : platform(thePlatform), status(theStatus) {}

  /// Asks every source, tool and service, which may take some seconds. No provider is asked, and
  /// no key is looked at but for whether there is one. Never throws. Main thread.
  [[nodiscard]] DoctorReport examine() const;

private:
  [[nodiscard]] std::vector<DoctorFinding> services() const;
  [[nodiscard]] DoctorFinding ffmpeg() const;
  [[nodiscard]] DoctorFinding extractor() const;
  [[nodiscard]] DoctorFinding portLister() const;
  [[nodiscard]] DoctorFinding provider() const;

  Platform platform;
  SystemStatus& status;
};

} // namespace velmor
