#include "platform/Environment.h"
#include "platform/Host.h"
#include "platform/ProcessLauncher.h"
#include "platform/Workspace.h"
#include "tests/platform/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <thread>

namespace velmor {

namespace {

TEST(LinuxHostTest, EndsItsLoopAndAllWaitingOnRequest) {
  ::setenv("TINKER_API_KEY", "tk-secret", 1);
  auto host = makeHost();
  const auto& platform = host->platform();
  EXPECT_EQ(platform.environment.variable("TINKER_API_KEY"), "tk-secret");
  EXPECT_EQ(std::getenv("TINKER_API_KEY"), nullptr);

  int exitStatus = 0;
  platform.mainLoop.startWorker(
      [&] {
        const ChildProcess asking{"/bin/sh", {"-c", "kill -TERM $PPID; while :; do :; done"}};
        exitStatus = platform.processes.run(asking).exitStatus;
      },
      [] {});
  host->onTerminationRequest([&] { platform.workspace.terminate(); });
  EXPECT_FALSE(platform.workspace.isTerminating());
  host->run();
  EXPECT_TRUE(platform.workspace.isTerminating());
  host.reset();
  EXPECT_EQ(exitStatus, 128 + SIGTERM);
}

TEST(LinuxHostTest, EndsAWaitOfTheMainThreadOnRequest) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    // Whoever runs the tests may have set it to be ignored.
    std::signal(signal, SIG_DFL);
    const auto host = makeHost();
    const auto& platform = host->platform();
    host->onTerminationRequest([&] { platform.workspace.terminate(); });
    int exitStatus = 0;
    platform.mainLoop.occupyActor([&] {
      const ChildProcess asking{
          "/bin/sh", {"-c", "kill -" + std::to_string(signal) + " $PPID; while :; do :; done"}};
      exitStatus = platform.processes.run(asking).exitStatus;
    });
    EXPECT_EQ(exitStatus, 128 + SIGTERM) << signal;
    host->run();
  }
}

/// Makes the program at `script` the one that opens addresses of a scheme of the test's own.
void installHandler(const std::filesystem::path& home, const std::filesystem::path& script) {
  std::filesystem::create_directories(home / "applications");
  std::ofstream(home / "applications" / "velmor-test.desktop")
      << "[Desktop Entry]\nType=Application\nName=Test\nExec=" << script.string()
      << " %u\nMimeType=x-scheme-handler/x-velmor-test;\n";
  std::ofstream(home / "applications" / "mimeapps.list")
      << "[Default Applications]\nx-scheme-handler/x-velmor-test=velmor-test.desktop\n";
}

TEST(LinuxHostTest, OpensAddressesAsOneArgument) {
  const TemporaryFolder folder;
  const auto script = folder.path / "handler";
  const auto opened = folder.path / "opened";
  std::ofstream(script) << "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" > " << opened.string()
                        << ".new\nmv " << opened.string() << ".new " << opened.string() << "\n";
  std::filesystem::permissions(script, std::filesystem::perms::owner_all);
  installHandler(folder.path, script);
  ::setenv("XDG_DATA_HOME", folder.path.c_str(), 1);
  ::setenv("XDG_RUNTIME_DIR", folder.path.c_str(), 1);
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");

  const auto host = makeHost();
  const std::string url = "x-velmor-test:a\"b'$(id)&;|%20*?x=1#c";
  for (const auto& address : {std::string("--help"), std::string("/bin/sh"), url})
    host->platform().workspace.openURL(address);
  while (!std::filesystem::exists(opened))
    std::this_thread::yield();
  std::string count;
  std::string argument;
  std::ifstream result(opened);
  std::getline(result, count);
  std::getline(result, argument);
  EXPECT_EQ(count, "1");
  EXPECT_EQ(argument, url);
}

} // namespace

} // namespace velmor
