#pragma once

#include "app/Program.h"
#include "platform/linux/LinuxHost.h"

#include <iostream>
#include <memory>
#include <utility>

namespace velmor {

/// The real main loop, for tests that change one thing about it.
class ChangedLoop : public MainLoop {
public:
  explicit ChangedLoop(MainLoop& loop) : real(loop) {}

  void post(Lane lane, Work work) override { real.post(lane, std::move(work)); }
  std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) override {
    return real.callLater(lane, delay, std::move(work));
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

protected:
  MainLoop& real;
};

/// The Linux backend with a main loop that is changed in one thing.
template <typename Loop>
class ChangedHost : public Host {
public:
  const Platform& platform() const override { return parts; }
  LineInput& standardInput() override { return host.standardInput(); }
  SystemStatus& systemStatus() override { return host.systemStatus(); }
  std::optional<Desktop> openDesktop() override { return host.openDesktop(); }
  void run() override { host.run(); }
  void onTerminationRequest(MainLoop::Work work) override {
    host.onTerminationRequest(std::move(work));
  }

  int runWindow() { return Program(*this, std::cout, std::cerr).run({}); }

private:
  LinuxHost host;
  Loop loop{host.platform().mainLoop};
  Platform parts = host.platform().with(loop);
};

} // namespace velmor
