#include "tests/desktop/ChangedHost.h"

namespace {

using namespace velmor;

/// The watcher's pauses pass a hundred times as fast, and each is told.
class HurriedLoop : public ChangedLoop {
public:
  using ChangedLoop::ChangedLoop;

  std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) override {
    constexpr Seconds pauseOfWatcher{1.5};
    constexpr double hurry = 100;
    if (lane != Lane::Actor || delay != pauseOfWatcher)
      return real.callLater(lane, delay, std::move(work));
    std::cout << "poll" << std::endl;
    return real.callLater(lane, delay / hurry, std::move(work));
  }
};

} // namespace

int main() {
  return ChangedHost<HurriedLoop>().runWindow();
}
