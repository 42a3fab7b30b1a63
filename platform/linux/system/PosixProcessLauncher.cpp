#include "platform/linux/system/PosixProcessLauncher.h"

#include "platform/linux/system/Child.h"
#include "platform/linux/system/FileDescriptor.h"

#include <cerrno>
#include <csignal>

namespace velmor {

void ignoreBrokenPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

PosixProcessLauncher::PosixProcessLauncher(std::stop_token quitToken) : quit(std::move(quitToken)) {
  ignoreBrokenPipes();
}

ChildResult PosixProcessLauncher::run(const ChildProcess& child) {
  if (quit.stop_requested()) throw LaunchError(systemMessage(ECANCELED));
  const StopEvent stop(quit);
  return ChildConversation(child, stop).toItsEnd();
}

} // namespace velmor
