#include "platform/TaskGroup.h"
#include "platform/Waiting.h"
#include "tests/fakes/FakeMainLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace velmor;

namespace {

Task<int> workedOut(MainLoop& loop, int value) {
  if (value < 0) throw std::runtime_error("negative");
  co_return co_await onWorker(loop, [value] { return value * 2; });
}

Task<void> countSleeps(MainLoop& loop, int& count) {
  for (;;) {
    const bool cancelled = co_await isCancelled();
    if (cancelled) co_return;
    ++count;
    co_await Sleep(loop, Seconds{1.5});
  }
}

Task<void> note(std::string& log, const char* what) {
  log += what;
  co_return;
}

} // namespace

TEST(Task, GivesResultsAndFailuresToWhoAwaits) {
  FakeMainLoop loop;
  TaskGroup tasks(loop);
  std::string log;
  const auto run = [](MainLoop& mainLoop, std::string& text) -> Task<void> {
    text += std::to_string(co_await workedOut(mainLoop, 21));
    try {
      static_cast<void>(co_await workedOut(mainLoop, -1));
    } catch (const std::exception& error) {
      text += error.what();
    }
  };
  const auto handle = tasks.start(run(loop, log));
  EXPECT_EQ(log, "") << "a task starts after what the lane already has to do";
  loop.runPending();
  EXPECT_EQ(log, "42negative");
  EXPECT_TRUE(handle.isDone());
}

TEST(Task, CancellingEndsASleepAndIsSeenAtTheNextCheck) {
  FakeMainLoop loop;
  TaskGroup tasks(loop);
  int count = 0;
  const auto handle = tasks.start(countSleeps(loop, count));
  loop.advance(Seconds{3.1});
  EXPECT_EQ(count, 3);
  handle.cancel();
  loop.runPending();
  EXPECT_TRUE(handle.isDone());
  EXPECT_TRUE(tasks.isEmpty());
  loop.advance(Seconds{10});
  EXPECT_EQ(count, 3);
}

TEST(Task, OneCancelledBeforeItStartsStillSeesIt) {
  FakeMainLoop loop;
  TaskGroup tasks(loop);
  int count = 0;
  tasks.start(countSleeps(loop, count)).cancel();
  loop.runPending();
  EXPECT_EQ(count, 0);
}

TEST(Task, DestroyingTheGroupEndsWhatStillWaits) {
  FakeMainLoop loop;
  loop.holdWorkers();
  int count = 0;
  {
    TaskGroup tasks(loop);
    tasks.start(countSleeps(loop, count));
    const auto waitForWorker = [](MainLoop& mainLoop, int& value) -> Task<void> {
      value += 100 * co_await workedOut(mainLoop, 1);
    };
    tasks.start(waitForWorker(loop, count));
    loop.runPending();
  }
  loop.finishWorkers();
  loop.advance(Seconds{10});
  EXPECT_EQ(count, 1);
}

TEST(Task, RunsInTheOrderOfStartingAndTellsWhenEmpty) {
  FakeMainLoop loop;
  TaskGroup tasks(loop);
  std::string log;
  tasks.whenEmpty([&] { log += "."; });
  tasks.start(note(log, "a"));
  tasks.start(note(log, "b"));
  loop.runPending();
  EXPECT_EQ(log, "ab.");
}
