#pragma once

#include "platform/RunningApplications.h"
#include "platform/linux/desktop/DesktopEntries.h"

#include <mutex>

namespace velmor {

class MprisBusSource;

/// The applications of an X11 desktop: the processes that own windows, in the window manager's
/// order, then media players without one.
///
/// An application's bundle identifier is that of its desktop entry, else the class of its windows
/// in lower case, else the program's name. Its localised name is that of the desktop entry, else
/// what it says to other programs, else the name that a script or a process has given itself, else
/// the class. Every call looks afresh, at the cost of a few milliseconds.
class DesktopApplications : public RunningApplications {
public:
  DesktopApplications(const Environment& environment, MprisBusSource& mprisBuses);

  std::vector<RunningApplication> list() override;

private:
  MprisBusSource& buses;
  std::mutex mutex;
  DesktopEntries entries;
};

} // namespace velmor
