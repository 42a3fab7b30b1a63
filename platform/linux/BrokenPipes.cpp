#include "platform/linux/BrokenPipes.h"

#include <csignal>

namespace velmor {

void ignoreBrokenPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

} // namespace velmor
