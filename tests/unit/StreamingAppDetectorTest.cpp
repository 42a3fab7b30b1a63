#include "nowplaying/StreamingAppDetector.h"

#include "model/Text.h"
#include "nowplaying/NowPlayingError.h"
#include "platform/OsascriptHost.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/unit/Outcome.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

constexpr auto trackScript = R"(tell application "Spotify"
    try
        if player state is not playing then return "STATE:paused"
        set trackName to name of current track
        set trackArtist to artist of current track
        set trackAlbum to album of current track
        return trackName & (ASCII character 30) & trackArtist & (ASCII character 30) & trackAlbum
    end try
end tell)";
constexpr auto pausedScript = R"(tell application "Music"
    if player state is paused then return "yes"
end tell
return "no")";

std::string current(FakePlatform& system) {
  return outcome([&] {
    return StreamingAppDetector::current(system.platform, "Spotify", {"Spotify"}, "the source",
                                         "the detection");
  });
}

TEST(StreamingAppDetector, AsksOnlyAPlayerThatRuns) {
  FakePlatform system;
  EXPECT_EQ(current(system), "none");
  EXPECT_TRUE(system.scripts.scripts.empty());
  system.processes.running = {"spotify"};
  EXPECT_EQ(current(system), "none");
  (void)StreamingAppDetector::isPaused(system.platform, "Music");
  EXPECT_EQ(system.scripts.scripts, (std::vector<std::string>{trackScript, pausedScript}));
  EXPECT_EQ(system.scripts.labels, std::vector<std::string>(2, "the media player"));
}

TEST(StreamingAppDetector, ReadsAnswers) {
  const std::string refused = NowPlayingError::automationDenied("the media player").what();
  const struct {
    int status;
    /// With a bar for the separator of the script's answers.
    std::string output;
    std::string error;
    std::string outcome;
    std::string log;
  } rows[] = {
      {0, " Title | Artist|Album \n", "ignored", "Title / Artist / Album", ""},
      {0, "T|A|B|C", "", "T / A / B\x1E\x43", ""},
      {0, "T|A|", "", "none", ""},
      {0, "T||B", "", "none", ""},
      {0, "T| |B", "", "none", ""},
      {0, "T|\xFF|B", "", "none", ""},
      {0, "STATE:paused\n", "", "none", ""},
      {1, "T|A|B", "28:40: Not authorized to send Apple events.", refused, ""},
      {1, "", "execution error: An error occurred. (-1743)\n", refused, ""},
      {1, "", " Not running.\n", "none", "Velmor AppleScript error: Not running."},
      {1, "T|A|B", " \n", "none", ""},
  };
  for (const auto& row : rows) {
    FakePlatform system;
    system.processes.running = {"spotify"};
    system.scripts.handler = [&](const auto&) {
      return ChildResult{row.status, text::replacingAll(row.output, "|", "\x1E"), row.error};
    };
    EXPECT_EQ(current(system), row.outcome) << row.output;
    EXPECT_EQ(text::joined(system.log.lines, "\n"), row.log);
  }
}

TEST(StreamingAppDetector, IsPausedOnlyWhenThePlayerSaysYes) {
  const std::pair<ChildResult, bool> rows[] = {{{0, "yes\n", ""}, true},
                                               {{0, "no", ""}, false},
                                               {{0, "", ""}, false},
                                               {{1, "yes", "(-1743)"}, false}};
  for (const auto& [answer, isPaused] : rows) {
    FakePlatform system;
    system.scripts.handler = [answer = answer](const auto&) { return answer; };
    EXPECT_EQ(StreamingAppDetector::isPaused(system.platform, "Music"), isPaused);
  }
}

TEST(OsascriptHost, HandsTheScriptOverOnStandardInput) {
  FakeProcesses processes;
  processes.handler = [](const auto&) { return ChildResult{1, "out", "error"}; };
  const auto result = OsascriptHost(processes).run("the script", "the media player");
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.output + result.errorOutput, "outerror");
  ASSERT_EQ(processes.started.size(), 1U);
  EXPECT_EQ(processes.started[0].executable, "/usr/bin/osascript");
  EXPECT_EQ(processes.started[0].arguments, std::vector<std::string>{"-"});
  EXPECT_EQ(processes.started[0].input, "the script");
}

} // namespace
} // namespace velmor
