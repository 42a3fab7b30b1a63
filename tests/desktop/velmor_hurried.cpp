#include "tests/desktop/ChangedHost.h"

namespace {

using namespace velmor;

/// The watcher's pauses pass a hundred times as fast, and each is told.
class HurriedLoop : public MainLoop {
public:
  explicit HurriedLoop(MainLoop& loop) : real(loop) {}

  void post(Lane lane, Work work) override { real.post(lane, std::move(work)); }
  std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) override {
    constexpr Seconds pauseOfWatcher{1.5};
    constexpr double hurry = 100;
    if (lane != Lane::Actor || delay != pauseOfWatcher)
      return real.callLater(lane, delay, std::move(work));
    std::cout << "poll" << std::endl;
    return real.callLater(lane, delay / hurry, std::move(work));
  }
  std::unique_ptr<Timer> callEvery(Lane lane, Seconds interval, Work work) override {
    return real.callEvery(lane, interval, std::move(work));
  }
  void startWorker(Work work, Work done) override {
    real.startWorker(std::move(work), std::move(done));
  }
  void occupyActor(const Work& work) override { real.occupyActor(work); }

private:
  MainLoop& real;
};

class HurriedHost : public ChangedHost {
public:
  const Platform& platform() const override { return parts; }

private:
  HurriedLoop loop{host.platform().mainLoop};
  Platform parts = host.platform().with(loop);
};

} // namespace

int main() {
  HurriedHost host;
  return ChangedHost::runWindow(host);
}
