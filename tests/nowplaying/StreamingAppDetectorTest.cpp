#include "nowplaying/StreamingAppDetector.h"

#include "base/Text.h"
#include "nowplaying/NowPlayingError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/support/Outcome.h"

#include <gtest/gtest.h>

using namespace velmor;

namespace {

std::string current(FakePlatform& system) {
  return outcome([&] {
    return StreamingAppDetector::current(system.platform, "Spotify", {"Spotify"}, "the source",
                                         "the detection");
  });
}

TEST(StreamingAppDetector, AsksOnlyAPlayerThatRuns) {
  FakePlatform system;
  system.scripts.handler = [](const auto&) { return ChildResult{0, "T\036A\036B", ""}; };
  EXPECT_EQ(current(system), "none");
  system.processes.running = {"spotify"};
  EXPECT_EQ(current(system), "T / A / B");
}

TEST(StreamingAppDetector, ReadsAnswers) {
  // With a bar for the separator of the script's answers.
  const std::pair<ChildResult, std::string> rows[] = {
      {{0, " Title | Artist|Album \n", "ignored"}, "Title / Artist / Album"},
      {{0, "T|A|B|C", ""}, "T / A / B\x1E\x43"},
      {{0, "T|A|", ""}, "none"},
      {{0, "T||B", ""}, "none"},
      {{0, "T|\xFF|B", ""}, "none"},
      {{1, "T|A|B", "execution error: An error occurred. (-1743)"},
       NowPlayingError::automationDenied("the media player").what()},
      {{1, "T|A|B", "Not running."}, "none"},
  };
  for (const auto& [answer, expected] : rows) {
    FakePlatform system;
    system.processes.running = {"spotify"};
    system.scripts.handler = [&answer = answer](const auto&) {
      auto result = answer;
      result.output = text::replacingAll(answer.output, "|", "\x1E");
      return result;
    };
    EXPECT_EQ(current(system), expected) << answer.output;
  }
}

} // namespace
