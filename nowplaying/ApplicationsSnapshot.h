#pragma once

#include "platform/RunningApplications.h"

#include <optional>
#include <vector>

namespace velmor {

/// The running applications as they were at the first question: listing them asks the desktop and
/// every media player, which is too dear to be done again for each source of one look. One thread.
class ApplicationsSnapshot : public RunningApplications {
public:
  explicit ApplicationsSnapshot(RunningApplications& applications) : live(applications) {}

  std::vector<RunningApplication> list() override {
    if (!taken) taken = live.list();
    return *taken;
  }

private:
  RunningApplications& live;
  std::optional<std::vector<RunningApplication>> taken;
};

} // namespace velmor
