#include "platform/TaskGroup.h"
#include "platform/Waiting.h"
#include "tests/unit/Outcome.h"

#include <gtest/gtest.h>

#include <stdexcept>

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

} // namespace

TEST(Task, GivesResultsAndFailuresToWhoAwaits) {
  FakeMainLoop loop;
  int doubled = 0;
  EXPECT_EQ(taskOutcome(loop, workedOut(loop, 21), doubled), "ok");
  EXPECT_EQ(doubled, 42);
  EXPECT_EQ(taskOutcome(loop, workedOut(loop, -1), doubled), "negative");
}

TEST(Task, CancellingEndsASleepAndIsSeenAtTheNextCheck) {
  FakeMainLoop loop;
  TaskGroup tasks(loop);
  int count = 0;
  bool empty = false;
  tasks.whenEmpty([&] { empty = true; });
  const auto handle = tasks.start(countSleeps(loop, count));
  loop.advance(Seconds{3.1});
  EXPECT_EQ(count, 3);
  handle.cancel();
  loop.runPending();
  EXPECT_TRUE(handle.isDone());
  EXPECT_TRUE(empty);
  tasks.start(countSleeps(loop, count)).cancel();
  loop.advance(Seconds{10});
  EXPECT_EQ(count, 3) << "one cancelled before it starts sees it as well";
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
