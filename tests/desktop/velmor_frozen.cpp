#include "app/Program.h"
#include "platform/linux/GlibMainLoop.h"
#include "platform/linux/LinuxHost.h"

#include <iostream>

namespace {

using namespace velmor;

/// The Linux backend, but for one thing: blocking work stops the window as well.
class FrozenHost : public Host {
public:
  const Platform& platform() const override { return host.platform(); }
  LineInput& standardInput() override { return host.standardInput(); }
  SystemStatus& systemStatus() override { return host.systemStatus(); }
  std::optional<Desktop> openDesktop() override {
    auto desktop = host.openDesktop();
    dynamic_cast<GlibMainLoop&>(platform().mainLoop).serveDisplayWhileOccupied(false);
    return desktop;
  }
  void run() override { host.run(); }
  void onTerminationRequest(MainLoop::Work work) override {
    host.onTerminationRequest(std::move(work));
  }

private:
  LinuxHost host;
};

} // namespace

int main(int argc, char** argv) {
  FrozenHost host;
  Program program(host, std::cout, std::cerr);
  return program.run({argv + 1, argv + argc});
}
