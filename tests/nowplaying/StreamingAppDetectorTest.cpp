#include "nowplaying/readers/StreamingAppDetector.h"

#include "base/Text.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/support/Outcome.h"

#include <gmock/gmock.h>

using namespace velmor;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A machine on which Spotify runs and the script tool, where it is started, ends with `result`.
class Machine : public FakePlatform {
public:
  explicit Machine(ChildResult result = {}) {
    processes.handler = [this, result](const ChildProcess& child) {
      if (child.executable != "/usr/bin/osascript") return ChildResult{spotifyRuns ? 0 : 1, "", ""};
      EXPECT_THAT(child.arguments, ElementsAre("-"));
      scripts.push_back(child.input.value_or(""));
      return result;
    };
  }

  std::string current() {
    return outcome([&] {
      return StreamingAppDetector::current(platform, "Spotify", {"Spotify"}, "the source",
                                           "the detection");
    });
  }

  bool spotifyRuns = true;
  std::vector<std::string> scripts;
};

TEST(StreamingAppDetector, RunsScriptsOnlyForAPlayerThatRuns) {
  Machine machine({0, "T\036A\036B", ""});
  machine.spotifyRuns = false;
  EXPECT_EQ(machine.current(), "none");
  EXPECT_THAT(machine.scripts, IsEmpty());
  machine.spotifyRuns = true;
  EXPECT_EQ(machine.current(), "T / A / B");
  EXPECT_FALSE(StreamingAppDetector::isPaused(machine.platform, "Music"));
  EXPECT_THAT(
      machine.scripts,
      ElementsAre("tell application \"Spotify\"\n    try\n"
                  "        if player state is not playing then return \"STATE:paused\"\n"
                  "        set trackName to name of current track\n"
                  "        set trackArtist to artist of current track\n"
                  "        set trackAlbum to album of current track\n"
                  "        return trackName & (ASCII character 30) & trackArtist & (ASCII "
                  "character 30) & trackAlbum\n    end try\nend tell",
                  "tell application \"Music\"\n    if player state is paused then return \"yes\"\n"
                  "end tell\nreturn \"no\""));
}

TEST(StreamingAppDetector, ReadsAnswers) {
  const std::string refused = NowPlayingError::automationDenied("the media player").what();
  // With a bar for the separator of the script's answers; then what the log says.
  const std::tuple<ChildResult, std::string, std::string> rows[] = {
      {{0, " Title | Artist|Album \n", "ignored"}, "Title / Artist / Album", ""},
      {{0, "T|A|B|C", ""}, "T / A / B\x1E\x43", ""},
      {{0, "STATE:paused\n", ""}, "none", ""},
      {{0, "T|A|", ""}, "none", ""},
      {{0, "T| |B", ""}, "none", ""},
      {{0, "T||B", ""}, "none", ""},
      {{0, "T|\xFF|B", ""}, "none", ""},
      {{1, "T|A|B", "execution error: An error occurred. (-1743)"}, refused, ""},
      {{1, "T|A|B", "Not authorized to send Apple events."}, refused, ""},
      {{1, "T|A|B", " Not running.\n"}, "none", "Velmor AppleScript error: Not running."},
      {{1, "T|A|B", " \n"}, "none", ""},
  };
  for (const auto& [answer, expected, line] : rows) {
    Machine machine(
        {answer.exitStatus, text::replacingAll(answer.output, "|", "\x1E"), answer.errorOutput});
    EXPECT_EQ(machine.current(), expected) << answer.output;
    EXPECT_EQ(text::joined(machine.log.lines, "\n"), line);
  }
}

TEST(StreamingAppDetector, TellsAPausedPlayer) {
  const std::pair<ChildResult, bool> rows[] = {
      {{0, "yes\n", ""}, true}, {{0, "no\n", ""}, false}, {{1, "yes", "Not authorized"}, false}};
  for (const auto& [answer, expected] : rows)
    EXPECT_EQ(StreamingAppDetector::isPaused(Machine(answer).platform, "Music"), expected);
}

TEST(StreamingAppDetector, LetsASystemWithoutTheToolAnswer) {
  Machine machine;
  machine.record.answerScript = [](const PlayerScript& script) {
    const bool asksForTrack = script.question == PlayerScript::Question::CurrentTrack;
    return ChildResult{0, asksForTrack ? script.application + "\036A\036B" : "yes", ""};
  };
  EXPECT_EQ(machine.current(), "Spotify / A / B");
  EXPECT_TRUE(StreamingAppDetector::isPaused(machine.platform, "Music"));
  EXPECT_THAT(machine.scripts, IsEmpty());
}

} // namespace
