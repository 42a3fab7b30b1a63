#pragma once

#include "platform/ProcessLauncher.h"

#include <stop_token>

namespace velmor {

/// From here on, writing to a pipe or socket that nobody reads fails instead of ending the
/// process. Children get the default back. May be called any number of times.
void ignoreBrokenPipes();

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
