#pragma once

#include "platform/Platform.h"

#include <string>
#include <vector>

namespace velmor {

/// What doctor says about one source of tracks, tool or service.
struct DoctorFinding {
  enum class State {
    /// Velmor can use it now.
    ready,
    /// Not there, which is a fault only when the user wants it.
    absent,
    /// There, but something is in its way.
    faulty
  };

  /// "Mixxx", say.
  std::string name;
  State state = State::absent;
  /// What was found, in a few words.
  std::string detail;
  /// What the user can do about it; "" for what is ready.
  std::string advice;
};

/// What this machine offers for finding a track, measuring it and asking for suggestions.
struct DoctorReport {
  /// The sources of tracks, in the order in which Velmor asks them.
  std::vector<DoctorFinding> sources;
  /// The system's services, then tools, then the model provider.
  std::vector<DoctorFinding> surroundings;
  /// What was tried out (DoctorTrials.h); empty when nothing was.
  std::vector<DoctorFinding> trials;
  bool trackCanBeFound = false;
  bool suggestionCanBeAsked = false;

  /// Also true only when all trials went well.
  [[nodiscard]] bool isReady() const;

  /// For people: a line for each finding, a line for each advice, and a line that sums up.
  [[nodiscard]] std::string readable() const;

  /// For scripts: one line with a JSON object, and a line feed.
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
  [[nodiscard]] DoctorFinding music() const;
  [[nodiscard]] DoctorFinding provider() const;

  Platform platform;
  SystemStatus& status;
};

} // namespace velmor
