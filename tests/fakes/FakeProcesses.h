#pragma once

#include "platform/ProcessLauncher.h"

#include <functional>
#include <set>

namespace velmor {

/// Records the children that are started and answers for them. Without a `handler` it plays pgrep:
/// a name in `running` is found.
class FakeProcesses : public ProcessLauncher {
public:
  ChildResult run(const ChildProcess& child) override {
    started.push_back(child);
    if (handler) return handler(child);
    return {running.contains(child.arguments.back()) ? 0 : 1, "", ""};
  }

  std::set<std::string> running;
  std::function<ChildResult(const ChildProcess&)> handler;
  std::vector<ChildProcess> started;
};

} // namespace velmor
