#include "platform/linux/ProcessSetup.h"

#include "platform/linux/bus/SessionBus.h"

#include <fcntl.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdlib>

namespace velmor {

namespace {

/// A file opened later must not become, say, the standard output of a child by accident.
void openStandardDescriptors() {
  int descriptor = 0;
  do {
    descriptor = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor > STDERR_FILENO) ::close(descriptor);
}

} // namespace

ProcessSetup::ProcessSetup(const Environment& environment) {
  std::setlocale(LC_ALL, "");
  openStandardDescriptors();
  std::signal(SIGCHLD, SIG_DFL);
  // With a display but no bus, GDBus would start a bus of its own and leave it running.
  if (!sessionBusAddress(environment)) ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
}

} // namespace velmor
