#include "platform/OsascriptHost.h"

#include "nowplaying/NowPlayingError.h"
#include "nowplaying/StreamingAppDetector.h"
#include "platform/linux/PosixProcessLauncher.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/platform/TemporaryFolder.h"
#include "tests/unit/Outcome.h"

#include <gtest/gtest.h>

#include <fstream>

namespace velmor {
namespace {

/// A stand-in for the script tool, which a test writes in shell.
class OsascriptHostTest : public testing::Test {
protected:
  OsascriptHostTest() {
    system.processes.running = {"spotify"};
    system.scripts.handler = [this](const std::string& script) { return host.run(script, ""); };
  }

  void writeTool(const std::string& lines) {
    std::ofstream(tool) << "#!/bin/sh\n" + lines + "\n";
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  }

  /// What the player's track becomes when the tool behaves so.
  std::string current(const std::string& toolLines) {
    writeTool(toolLines);
    return current();
  }

  std::string current() {
    return outcome([&] {
      return StreamingAppDetector::current(system.platform, "Spotify", {"Spotify"}, "", "");
    });
  }

  TemporaryFolder folder;
  std::filesystem::path tool = folder.path / "osascript";
  FakePlatform system;
  PosixProcessLauncher launcher{std::stop_token()};
  OsascriptHost host{launcher, tool};
};

TEST_F(OsascriptHostTest, GivesTheScriptAndTakesTheAnswer) {
  EXPECT_EQ(current("read -r line; printf '%s\\036%s\\036%s\\n' \"$*\" \"$line\" \"$(wc -l)\""),
            "- / tell application \"Spotify\" / 7");
}

TEST_F(OsascriptHostTest, TellsRefusalsFromOtherFailures) {
  const std::string refused = NowPlayingError::automationDenied("the media player").what();
  EXPECT_EQ(current("echo 'Not authorized to send Apple events to Spotify.' >&2; exit 1"), refused);
  EXPECT_EQ(current("echo '28:40: execution error: nope (-1743)' >&2; exit 1"), refused);
  EXPECT_TRUE(system.log.lines.empty());
  EXPECT_EQ(current("echo 'no such application' >&2; exit 1"), "none");
  EXPECT_EQ(system.log.lines,
            std::vector<std::string>{"Velmor AppleScript error: no such application"});
}

TEST_F(OsascriptHostTest, TakesMoreThanAPipeHoldsFromAToolThatReadsNothing) {
  const auto answer =
      current("exec <&-; printf 'T\\036A\\036'; head -c 300000 /dev/zero | tr '\\0' x");
  EXPECT_EQ(answer, "T / A / " + std::string(300000, 'x'));
}

TEST_F(OsascriptHostTest, FailsWithoutATool) {
  EXPECT_EQ(current(), "No such file or directory");
  std::ofstream(tool) << "#!/bin/sh\n";
  EXPECT_EQ(current(), "Permission denied");
}

} // namespace
} // namespace velmor
