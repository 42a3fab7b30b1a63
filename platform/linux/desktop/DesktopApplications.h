#pragma once

#include "platform/RunningApplications.h"
#include "platform/linux/desktop/DesktopEntries.h"
#include "platform/linux/desktop/WindowProperties.h"
#include "platform/linux/media/MprisPlayer.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

class MprisBusSource;

/// What is known of something that counts as an application.
struct ApplicationEvidence {
  std::int32_t process = 0;
  /// "" when its windows do not tell, or it has none.
  std::string windowClass;
  std::optional<MprisPlayer> player;
};

/// One entry for each process and class of windows, in the order of the windows, then the players
/// without one. The process alone is not enough: every sandbox and container counts its processes
/// from 1.
[[nodiscard]] std::vector<ApplicationEvidence>
collectEvidence(const std::vector<EwmhClient>& windows, const std::vector<MprisPlayer>& players);

/// The applications of an X11 desktop: the processes that own windows, in the window manager's
/// order, then media players without one.
///
/// An application's bundle identifier is that of its desktop entry, else the class of its windows
/// in lower case, else the program's name. Its localised name is that of the desktop entry, else
/// what it says to other programs, else the name that a script or a process has given itself, else
/// the class. Every call looks afresh, at the cost of a few milliseconds.
class DesktopApplications : public RunningApplications {
public:
  /// Properties and buses must outlive it.
  DesktopApplications(const Environment& environment, const WindowProperties& windowProperties,
                      MprisBusSource& mprisBuses);

  std::vector<RunningApplication> list() override;

private:
  const WindowProperties& properties;
  MprisBusSource& buses;
  std::mutex mutex;
  DesktopEntries entries;
};

} // namespace velmor
