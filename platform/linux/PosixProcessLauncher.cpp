#include "platform/linux/PosixProcessLauncher.h"

#include "platform/linux/BrokenPipes.h"
#include "platform/linux/ChildConversation.h"
#include "platform/linux/StopEvent.h"
#include "platform/linux/SystemMessage.h"

#include <cerrno>

namespace velmor {

PosixProcessLauncher::PosixProcessLauncher(std::stop_token quitToken) : quit(std::move(quitToken)) {
  ignoreBrokenPipes();
}

ChildResult PosixProcessLauncher::run(const ChildProcess& child) {
  if (quit.stop_requested()) throw LaunchError(systemMessage(ECANCELED));
  const StopEvent stop(quit);
  return ChildConversation(child, stop).toItsEnd();
}

} // namespace velmor
