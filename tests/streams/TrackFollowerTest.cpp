#include "streams/TrackFollower.h"

#include "platform/async/TaskGroup.h"
#include "streams/WindowLine.h"
#include "tests/fakes/FakeLocalService.h"
#include "tests/fakes/FakeMainLoop.h"

#include <gtest/gtest.h>

using namespace velmor;

namespace {

using Heard = std::vector<std::string>;

class TrackFollowerTest : public testing::Test {
protected:
  TrackFollowerTest() {
    feed.onTrack([this](const auto& track) { heard.push_back(track ? track->title : "-"); });
    tasks.start(follower.run());
  }

  static NowPlayingTrack track(const std::string& title) { return {.title = title, .artist = "A"}; }
  /// What is heard until that many looks are over.
  Heard after(int count) {
    loop.advance(count * TrackFollower::pollInterval);
    return std::exchange(heard, {});
  }
  /// A window that says what plays when it is asked, and nothing else.
  void openWindow(const std::string& title) {
    service.offer([this, title](auto connection) {
      window = connection;
      window->read(
          [this, title](const auto& line) {
            EXPECT_EQ(WindowQuestion::read(line)->kind, WindowQuestion::Kind::follow);
            say({.aboutTrack = true, .track = track(title)});
          },
          [] {});
    });
  }
  void say(const WindowLine& line) { window->send(line.line()); }

  FakeMainLoop loop;
  FakeLocalService service{loop};
  std::shared_ptr<LocalConnection> window;
  std::optional<NowPlayingTrack> playing;
  int looks = 0;
  Heard heard;
  TrackFeed feed;
  TrackFollower follower{loop, service,
                         [this] {
                           ++looks;
                           return TrackLook{playing, ""};
                         },
                         feed};
  TaskGroup tasks{loop};
};

} // namespace

TEST_F(TrackFollowerTest, LooksItselfWithoutAWindow) {
  EXPECT_EQ(after(3), Heard{"-"}) << "the first look is news too";
  playing = track("T");
  EXPECT_EQ(after(3), Heard{"T"});
  playing.reset();
  EXPECT_EQ(after(1), Heard{}) << "one miss is no stop";
  EXPECT_EQ(after(3), Heard{"-"});
  tasks.cancelAll();
  looks = 0;
  after(3);
  EXPECT_EQ(looks, 0);
}

TEST_F(TrackFollowerTest, LeavesTheLookingToAWindow) {
  playing = track("T");
  EXPECT_EQ(after(1), Heard{"T"});
  openWindow("T");
  EXPECT_EQ(after(2), Heard{}) << "both name the same track";
  looks = 0;
  say({.aboutTrack = true, .track = track("U")});
  say({.suggestions = VisionResult{.notice = "N"}});
  say({.aboutTrack = true});
  say({.aboutTrack = true, .track = track("V")});
  EXPECT_EQ(after(3), (Heard{"U", "-", "V"})) << "no change is lost, however short";
  EXPECT_EQ(feed.suggestions()->notice, "N");
  EXPECT_EQ(looks, 0);
  service.handler = nullptr;
  window.reset();
  playing.reset();
  EXPECT_EQ(after(4), Heard{"-"}) << "the window has gone";
}

TEST_F(TrackFollowerTest, GivesUpAWindowThatHangs) {
  openWindow("T");
  EXPECT_EQ(after(2).back(), "T");
  for (int i = 0; i < 20; ++i, after(4))
    say({});
  EXPECT_EQ(service.connections, 1) << "a sign of life every six seconds is enough";
  service.mute = true;
  playing = track("U");
  EXPECT_EQ(after(15), Heard{"U"});
  after(100);
  EXPECT_LE(service.connections, 8) << "it is not asked all the time";
}

TEST(WindowLine, ReadsBackWhatItWrites) {
  const WindowLine line{.aboutTrack = true,
                        .track = NowPlayingTrack{.title = "T\n\"", .bpm = 120.5},
                        .suggestions = VisionResult{.source = "S"},
                        .error = "E"};
  const auto read = WindowLine::read(line.line());
  ASSERT_TRUE(read && read->track && read->suggestions);
  EXPECT_EQ(*read->track, *line.track);
  EXPECT_EQ(*read->suggestions, *line.suggestions);
  EXPECT_EQ(read->error, "E");
  EXPECT_TRUE(WindowQuestion::read(R"({"ask":"suggest","crate":true})")->fromCrate);
  for (const auto* const bad : {"", "[]", R"({"ask":1})", R"({"ask":"settings"})",
                                R"({"track":{"title":1}})", R"({"error":{}})"}) {
    EXPECT_FALSE(WindowQuestion::read(bad)) << bad;
    const bool isQuestion = std::string_view(bad).starts_with("{\"ask");
    EXPECT_TRUE(isQuestion || !WindowLine::read(bad)) << bad;
  }
}
