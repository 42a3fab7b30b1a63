#include "nowplaying/StreamingAppDetector.h"

#include "nowplaying/AppleScript.h"
#include "nowplaying/NowPlayingError.h"
#include "platform/OsascriptHost.h"
#include "tests/fakes/FakePlatform.h"

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

std::optional<NowPlayingTrack> current(FakePlatform& system) {
  return StreamingAppDetector::current(system.platform, "Spotify", {"Spotify"}, "a source",
                                       "a detection");
}

TEST(StreamingAppDetector, AsksOnlyAPlayerThatRuns) {
  FakePlatform system;
  EXPECT_FALSE(current(system));
  EXPECT_TRUE(system.scripts.scripts.empty());
  system.processes.running = {"spotify"};
  EXPECT_FALSE(current(system));
  (void)StreamingAppDetector::isPaused(system.platform, "Music");
  EXPECT_EQ(system.scripts.scripts, (std::vector<std::string>{trackScript, pausedScript}));
  EXPECT_EQ(system.scripts.labels, std::vector<std::string>(2, "the media player"));
}

TEST(StreamingAppDetector, ReadsAnswers) {
  const struct {
    std::string answer;
    /// "title / artist / album", or "" for no track.
    std::string track;
  } rows[] = {
      {" Title \x1E Artist\x1E"
       "Album \n",
       "Title / Artist / Album"},
      {"T\x1E"
       "A\x1E"
       "B\x1E"
       "C",
       "T / A / B\x1E"
       "C"},
      {"T\x1E"
       "A\x1E",
       ""},
      {"T\x1E\x1E"
       "B",
       ""},
      {"T\x1E \x1E"
       "B",
       ""},
      {"STATE:paused\n", ""},
      {"", ""},
      {"T\x1E\xFF\x1E"
       "B",
       ""},
  };
  for (const auto& row : rows) {
    FakePlatform system;
    system.processes.running = {"spotify"};
    system.scripts.handler = [&](const auto&) { return ChildResult{0, row.answer, "ignored"}; };
    const auto track = current(system);
    EXPECT_EQ(track ? track->title + " / " + track->artist + " / " + track->album : "", row.track);
    EXPECT_EQ(track ? track->source + track->detection : "", track ? "a sourcea detection" : "");
    EXPECT_TRUE(system.log.lines.empty());
  }
}

TEST(StreamingAppDetector, TellsRefusalsFromOtherFailures) {
  const struct {
    std::string errorText;
    bool isRefused;
    std::vector<std::string> log;
  } rows[] = {
      {"28:40: execution error: Not authorized to send Apple events to Spotify.\n", true, {}},
      {"execution error: An error occurred. (-1743)\n", true, {}},
      {"execution error: Application isn't running. (-600)\n",
       false,
       {"Velmor AppleScript error: execution error: Application isn't running. (-600)"}},
      {" \n", false, {}},
  };
  for (const auto& row : rows) {
    FakePlatform system;
    system.processes.running = {"spotify"};
    system.scripts.handler = [&](const auto&) { return ChildResult{1, "yes", row.errorText}; };
    EXPECT_FALSE(StreamingAppDetector::isPaused(system.platform, "Spotify"));
    system.log.lines.clear();
    try {
      EXPECT_FALSE(current(system));
      EXPECT_FALSE(row.isRefused);
    } catch (const NowPlayingError& error) {
      EXPECT_TRUE(row.isRefused);
      EXPECT_EQ(error.errorDescription(),
                NowPlayingError::automationDenied("the media player").errorDescription());
    }
    EXPECT_EQ(system.log.lines, row.log);
  }
}

TEST(StreamingAppDetector, IsPausedOnlyWhenThePlayerSaysYes) {
  for (const std::string answer : {"yes\n", "no", "", "yes please"}) {
    FakePlatform system;
    system.scripts.handler = [&](const auto&) { return ChildResult{0, answer, ""}; };
    EXPECT_EQ(StreamingAppDetector::isPaused(system.platform, "Music"), answer == "yes\n");
  }
}

TEST(AppleScript, NamesThePlayerOfItsLabelInARefusal) {
  FakePlatform system;
  system.scripts.handler = [](const auto&) { return ChildResult{1, "", "(-1743)"}; };
  const auto refusal = [&](const std::optional<std::string>& label) {
    try {
      return runAppleScript(system.platform, "", label);
    } catch (const NowPlayingError& error) {
      return error.errorDescription();
    }
  };
  EXPECT_EQ(refusal("Pandora"), NowPlayingError::automationDenied("Pandora").errorDescription());
  EXPECT_EQ(refusal({}), NowPlayingError::automationDenied("the media player").errorDescription());
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
