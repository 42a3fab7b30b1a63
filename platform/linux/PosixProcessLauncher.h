#pragma once

#include "platform/ProcessLauncher.h"

#include <stop_token>

namespace velmor {

/// Starts children with posix_spawn, each in a process group of its own.
class PosixProcessLauncher final : public ProcessLauncher {
public:
  /// `quitToken` ends running children, which `run` then reports as ended by a signal; children
  /// wanted afterwards are not started any more.
  explicit PosixProcessLauncher(std::stop_token quitToken);

  [[nodiscard]] ChildResult run(const ChildProcess& child) override;

private:
  std::stop_token quit;
};

} // namespace velmor
