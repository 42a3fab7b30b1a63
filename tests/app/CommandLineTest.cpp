#include "app/CommandLine.h"

#include "app/TrackText.h"

#include <gtest/gtest.h>

using namespace velmor;

TEST(CommandLine, AcceptsWhatItKnowsAndNothingElse) {
  using Command = CommandLine::Command;
  const auto parse = [](const std::vector<std::string>& arguments) {
    return CommandLine::parse(arguments);
  };
  EXPECT_EQ(parse({})->command, Command::window);
  EXPECT_EQ(parse({"bridge"})->command, Command::bridge);
  EXPECT_FALSE(parse({"now"})->json);
  EXPECT_TRUE(parse({"suggest", "--json"})->json);
  const auto doctor = parse({"doctor", "--listen", "--json", "--ask"});
  EXPECT_TRUE(doctor->json && doctor->ask && doctor->listen);
  EXPECT_TRUE(parse({"suggest", "--json", "--crate"})->fromCrate);
  EXPECT_EQ(parse({"after", "--json", "--json"})->track, "--json");
  EXPECT_TRUE(parse({"after", "A - B", "--json"})->json);
  const auto follow = parse({"now", "--output", "--json", "--follow", "--json"});
  EXPECT_TRUE(follow->follow && follow->json && follow->output == "--json");
  EXPECT_EQ(parse({"serve", "--port", "8080"})->port, 8080);
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{"--json"},
                                             {"now", "--json", "--json"},
                                             {"bridge", "--json"},
                                             {""},
                                             {"Now"},
                                             {"now", "--crate"},
                                             {"now", "--format"},
                                             {"now", "--format", ""},
                                             {"now", "--format", "{title}", "--json"},
                                             {"suggest", "--follow"},
                                             {"serve"},
                                             {"serve", "--port", "65536"},
                                             {"serve", "--port", "80 "},
                                             {"now", "--ask"},
                                             {"after"},
                                             {"crate", "A"}}) {
    EXPECT_FALSE(parse(wrong)) << wrong.front();
  }
}

TEST(TrackText, PrintsNoControlCharacters) {
  const NowPlayingTrack track{.title = "T\x1B]0;x\x07\xFF\xC2\x9B"
                                       "2J",
                              .artist = "Ä\n",
                              .bpm = 124.04,
                              .source = "Mixxx",
                              .detection = "d"};
  EXPECT_EQ(TrackText::readable(track), "Ä  – T ]0;x \uFFFD 2J (124.0 BPM) [Mixxx: d]\n");
  EXPECT_EQ(TrackText::json({.title = "\x1B"}),
            R"({"album":"","artist":"","bpm":0,"detection":"","genre":"","key":"","source":"",)"
            R"("title":"\u001b"})"
            "\n");
}

TEST(TrackText, SaysThatTheModelSeesNoPlayback) {
  EXPECT_EQ(TrackText::readable(VisionResult{.source = "S + Tinker", .notice = "Detected."}),
            "The model sees no playback, so it suggests nothing.\nDetected. S + Tinker\n");
}
