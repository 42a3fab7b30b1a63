#pragma once

#include "platform/Platform.h"

#include <string>
#include <vector>

namespace velmor {

/// What was found out about one source, tool or service.
struct DoctorFinding {
  enum class State {
    /// In order, and of use right now.
    ready,
    /// Not there. That is no fault unless the user wants it.
    absent,
    /// There, but something is in its way.
    faulty
  };

  std::string name;
  State state = State::absent;
  std::string detail;
  /// What the user can do; "" for what is ready.
  std::string advice;
};

/// What this machine offers for finding a track, measuring it and asking for suggestions.
struct DoctorReport {
  /// Where tracks are read from, in the order in which they are asked.
  std::vector<DoctorFinding> sources;
  /// The system's services, then tools, then the model provider.
  std::vector<DoctorFinding> surroundings;
  bool trackCanBeFound = false;
  bool suggestionCanBeAsked = false;

  [[nodiscard]] bool isReady() const { return trackCanBeFound && suggestionCanBeAsked; }

  /// A line a finding and a line for each advice.
  [[nodiscard]] std::string readable() const;

  /// One compact object and a line feed.
  [[nodiscard]] std::string json() const;
};

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
