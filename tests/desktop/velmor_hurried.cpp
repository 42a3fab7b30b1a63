#include "app/Program.h"
#include "platform/linux/LinuxHost.h"

#include <iostream>
#include <memory>
#include <utility>

namespace {

using namespace velmor;

/// The real main loop, but the watcher's pauses pass a hundred times as fast, and each is told.
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
  void occupyActor(Work work, Work done) override {
    real.occupyActor(std::move(work), std::move(done));
  }

private:
  MainLoop& real;
};

/// The Linux backend with that loop.
class HurriedHost : public Host {
public:
  const Platform& platform() const override { return parts; }
  LineInput& standardInput() override { return host.standardInput(); }
  SystemStatus& systemStatus() override { return host.systemStatus(); }
  bool isErrorTerminal() const override { return host.isErrorTerminal(); }
  LocalService& localService() override { return host.localService(); }
  std::optional<Desktop> openDesktop() override { return host.openDesktop(); }
  void run() override { host.run(); }
  void onTerminationRequest(MainLoop::Work work) override {
    host.onTerminationRequest(std::move(work));
  }
  void onOutputClosed(MainLoop::Work work) override { host.onOutputClosed(std::move(work)); }

private:
  LinuxHost host;
  HurriedLoop loop{host.platform().mainLoop};
  Platform parts = host.platform().with(loop);
};

} // namespace

int main() {
  HurriedHost host;
  return Program(host, std::cout, std::cerr).run({});
}
