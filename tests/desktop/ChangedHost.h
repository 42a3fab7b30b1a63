#pragma once

#include "app/Program.h"
#include "platform/linux/LinuxHost.h"
#include "platform/linux/loop/GlibMainLoop.h"

#include <iostream>

namespace velmor {

/// The Linux backend, for tests that change one thing about it.
class ChangedHost : public Host {
public:
  const Platform& platform() const override { return host.platform(); }
  LineInput& standardInput() override { return host.standardInput(); }
  SystemStatus& systemStatus() override { return host.systemStatus(); }
  std::optional<Desktop> openDesktop() override { return host.openDesktop(); }
  void run() override { host.run(); }
  void onTerminationRequest(MainLoop::Work work) override {
    host.onTerminationRequest(std::move(work));
  }

  static int runWindow(Host& host) { return Program(host, std::cout, std::cerr).run({}); }

protected:
  LinuxHost host;
};

} // namespace velmor
