#include "platform/linux/loop/GlibMainLoop.h"
#include "platform/linux/loop/StandardInputLines.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <latch>

namespace velmor {

namespace {

using Lane = MainLoop::Lane;
using Names = std::vector<std::string>;
using testing::ElementsAre;

constexpr Seconds soon{0.005};

class MainLoopTest : public testing::Test {
protected:
  MainLoop::Work note(const std::string& name) {
    return [this, name] { happened.push_back(name); };
  }
  void quitAfterActorWork() {
    loop.post(Lane::Actor, [this] { loop.quit(); });
  }

  /// Everything that is read to the end of this descriptor, which is closed then.
  Names linesOf(int descriptor) {
    Names lines;
    StandardInputLines input(loop, descriptor);
    input.read([&](std::string line) { lines.push_back(std::move(line)); },
               [this] { loop.quit(); });
    loop.run();
    ::close(descriptor);
    return lines;
  }

  Names happened;
  GlibMainLoop loop;
};

TEST_F(MainLoopTest, KeepsTheOrderOfALaneAcrossThreads) {
  std::vector<int> order;
  loop.startWorker(
      [&] {
        for (int number = 0; number < 500; ++number)
          loop.post(Lane::Actor, [&order, number] { order.push_back(number); });
      },
      [this] { loop.quit(); });
  loop.run();
  ASSERT_EQ(order.size(), 500U);
  EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST_F(MainLoopTest, TimersEndWhenTheyAreDestroyedEvenInsideTheirOwnCall) {
  int calls = 0;
  std::unique_ptr<Timer> repeating = loop.callEvery(Lane::Actor, soon, [&] {
    if (++calls == 3) repeating.reset();
  });
  std::unique_ptr<Timer> once;
  std::unique_ptr<Timer> next;
  once = loop.callLater(Lane::Display, soon, [&] {
    happened.push_back("once");
    once.reset();
    next = loop.callLater(Lane::Display, 10 * soon, [this] { loop.quit(); });
  });
  auto cancelled = loop.callLater(Lane::Actor, soon, note("cancelled"));
  // Its call already waits in the lane when it is cancelled.
  auto due = loop.callLater(Lane::Actor, Seconds{0}, note("due"));
  loop.post(Lane::Actor, [&] { cancelled.reset(); });
  loop.post(Lane::Display, [&] { due.reset(); });
  loop.run();
  EXPECT_EQ(calls, 3);
  EXPECT_THAT(happened, ElementsAre("once"));
}

TEST_F(MainLoopTest, OccupiedActorLaneHoldsItsWorkBackWhileTheDisplayLaneGoesOn) {
  std::latch gate{2};
  int frames = 0;
  const auto due = loop.callLater(Lane::Actor, soon, note("actor timer"));
  const auto frame = loop.callEvery(Lane::Display, 2 * soon, [&] {
    if (++frames == 1) loop.post(Lane::Actor, note("from display"));
    if (frames == 5) gate.count_down();
  });
  loop.post(Lane::Actor, [&] {
    loop.post(Lane::Actor, note("posted before"));
    loop.occupyActor(
        [&] {
          loop.post(Lane::Actor, note("from work"));
          loop.post(Lane::Display, [&] {
            note("display")();
            gate.count_down();
          });
          gate.wait();
        },
        [&] {
          note("done")();
          quitAfterActorWork();
        });
  });
  loop.run();
  EXPECT_THAT(happened, testing::UnorderedElementsAre("display", "done", "posted before",
                                                      "from work", "from display", "actor timer"));
  EXPECT_THAT(Names(happened.begin(), happened.begin() + 3),
              ElementsAre("display", "done", "posted before"));
}

TEST_F(MainLoopTest, ThreadsDoNotPileUpBehindWorkThatHangs) {
  constexpr int pieces = 50;
  std::latch gate{1};
  std::atomic<int> running = 0;
  std::atomic<int> most = 0;
  int done = 0;
  for (int piece = 0; piece < pieces; ++piece) {
    loop.startWorker(
        [&] {
          most = std::max<int>(most, ++running);
          gate.wait();
          --running;
        },
        [&] {
          if (++done == pieces) loop.quit();
        });
  }
  // What occupies the lane never waits for them.
  loop.post(Lane::Actor, [&] { loop.occupyActor([&] { gate.count_down(); }, [] {}); });
  loop.run();
  EXPECT_EQ(done, pieces);
  EXPECT_LE(most, 8);
}

TEST_F(MainLoopTest, QuittingEndsTheWaitForOccupyingWork) {
  // Shared, since the work may end after the test's last line.
  const auto gate = std::make_shared<std::latch>(1);
  loop.post(Lane::Actor, [&] {
    loop.occupyActor([gate] { gate->wait(); }, note("done"));
    loop.post(Lane::Display, [this] { loop.quit(); });
  });
  loop.run();
  gate->count_down();
  EXPECT_THAT(happened, testing::IsEmpty());
}

TEST_F(MainLoopTest, ReadsLinesOfEveryLengthToTheEnd) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  const std::string longLine(3'000'000, 'x');
  loop.startWorker(
      [&] {
        const auto text = "first\n\n" + longLine + "\nlast without feed";
        for (std::size_t done = 0; done < text.size();)
          done += static_cast<std::size_t>(::write(ends[1], &text[done], text.size() - done));
        ::close(ends[1]);
      },
      [] {});
  EXPECT_THAT(linesOf(ends[0]), ElementsAre("first", "", longLine, "last without feed"));
}

TEST_F(MainLoopTest, ReadsAFileLikeAPipe) {
  const int file = ::open("/proc/sys/kernel/ostype", O_RDONLY | O_CLOEXEC);
  EXPECT_THAT(linesOf(file), ElementsAre("Linux"));
}

} // namespace

} // namespace velmor
