#include "platform/Environment.h"
#include "platform/Host.h"
#include "platform/ProcessLauncher.h"
#include "platform/Workspace.h"
#include "tests/platform/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <thread>

namespace velmor {

namespace {

TEST(LinuxHostTest, EndsItsLoopAndAllWaitingOnRequest) {
  ::setenv("TINKER_API_KEY", "tk-secret", 1);
  auto host = makeHost();
  const auto& platform = host->platform();
  EXPECT_EQ(platform.environment.variable("TINKER_API_KEY"), "tk-secret");
  EXPECT_EQ(std::getenv("TINKER_API_KEY"), nullptr);

  host->onTerminationRequest([&] { platform.workspace.terminate(); });
  int exitStatus = 0;
  platform.mainLoop.startWorker(
      [&] {
        const ChildProcess asking{"/bin/sh", {"-c", "kill -TERM $PPID; while :; do :; done"}};
        exitStatus = platform.processes.run(asking).exitStatus;
      },
      [] {});
  EXPECT_FALSE(platform.workspace.isTerminating());
  host->run();
  EXPECT_TRUE(platform.workspace.isTerminating());
  host.reset();
  EXPECT_EQ(exitStatus, 128 + SIGTERM);
}

TEST(LinuxHostTest, OpensAddressesAsOneArgument) {
  const TemporaryFolder folder;
  const auto script = folder.path / "handler";
  const auto opened = folder.path / "opened";
  std::ofstream(script) << "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" > " << opened.string()
                        << ".new\nmv " << opened.string() << ".new " << opened.string() << "\n";
  std::filesystem::permissions(script, std::filesystem::perms::owner_all);
  const auto applications = folder.path / "applications";
  std::filesystem::create_directories(applications);
  std::ofstream(applications / "velmor-test.desktop")
      << "[Desktop Entry]\nType=Application\nName=Test\nExec=" << script.string() << " %u\n";
  std::ofstream(applications / "mimeapps.list")
      << "[Default Applications]\nx-scheme-handler/x-velmor-test=velmor-test.desktop\n";
  ::setenv("XDG_DATA_HOME", folder.path.c_str(), 1);
  ::setenv("XDG_RUNTIME_DIR", folder.path.c_str(), 1);
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");

  const auto host = makeHost();
  const std::string url = "x-velmor-test:a\"b'$(id)&;|%20*?x=1#c";
  host->platform().workspace.openURL("/bin/sh");
  host->platform().workspace.openURL(url);
  while (!std::filesystem::exists(opened))
    std::this_thread::yield();
  std::ostringstream arguments;
  arguments << std::ifstream(opened).rdbuf();
  EXPECT_EQ(arguments.str(), "1\n" + url + "\n");
}

} // namespace

} // namespace velmor
