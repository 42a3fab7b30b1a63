#include "platform/Host.h"
#include "platform/Workspace.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

namespace velmor {

namespace {

TEST(LinuxHostDeathTest, EndsInTimeWhateverHangs) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto endWhileThisHangs = [](const MainLoop::Work& work) {
    const auto host = makeHost();
    const auto& platform = host->platform();
    platform.mainLoop.startWorker(work, [] {});
    platform.workspace.terminate();
    host->run();
  };
  EXPECT_EXIT(endWhileThisHangs([] { ::pause(); }), testing::ExitedWithCode(1), "");
  EXPECT_EXIT((endWhileThisHangs([] {}), std::this_thread::sleep_for(std::chrono::seconds{3}),
               std::_Exit(0)),
              testing::ExitedWithCode(0), "")
      << "what ends by itself is left alone";
}

TEST(LinuxHostTest, OpensAddressesAsOneArgument) {
  const TemporaryFolder folder;
  const auto script = folder.path / "handler";
  const auto opened = folder.path / "opened";
  std::ofstream(script) << "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" "
                           "\"${WEBKIT_DISABLE_DMABUF_RENDERER-unset}\" > "
                        << opened.string() << ".new\nmv " << opened.string() << ".new "
                        << opened.string() << "\n";
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
  // The window sets it for its own page; a browser must not inherit it.
  ::setenv("WEBKIT_DISABLE_DMABUF_RENDERER", "1", 1);

  const auto host = makeHost();
  const std::string url = "x-velmor-test:a\"b'$(id)&;|%20*?x=1#c";
  host->platform().workspace.openURL("/bin/sh");
  host->platform().workspace.openURL(url);
  while (!std::filesystem::exists(opened))
    std::this_thread::yield();
  std::ostringstream arguments;
  arguments << std::ifstream(opened).rdbuf();
  EXPECT_EQ(arguments.str(), "1\n" + url + "\nunset\n");
}

} // namespace

} // namespace velmor
