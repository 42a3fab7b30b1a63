#include "tests/platform/PrivateBus.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>
#include <stdexcept>

namespace velmor {

PrivateBus::PrivateBus() {
  const auto configuration = (folder.path / "bus.conf").string();
  std::ofstream(configuration)
      << "<busconfig><type>session</type><listen>unix:path=" << (folder.path / "bus").string()
      << "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
         "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>";
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  daemon = ::fork();
  if (daemon == 0) {
    ::dup2(ends[1], STDOUT_FILENO);
    ::execl("/usr/bin/dbus-daemon", "dbus-daemon", "--nofork", "--print-address",
            ("--config-file=" + configuration).c_str(), nullptr);
    ::_exit(1);
  }
  ::close(ends[1]);
  char letter = 0;
  while (::read(ends[0], &letter, 1) == 1 && letter != '\n')
    address += letter;
  ::close(ends[0]);
  if (address.empty()) throw std::runtime_error("no bus");
}

PrivateBus::~PrivateBus() {
  ::kill(daemon, SIGTERM);
  ::waitpid(daemon, nullptr, 0);
}

} // namespace velmor
