#include "platform/async/TaskGroup.h"
#include "platform/async/Waiting.h"
#include "tests/fakes/FakeMainLoop.h"

#include <gtest/gtest.h>

using namespace velmor;

namespace {

Task<void> countSleeps(MainLoop& loop, int& count) {
  for (;;) {
    const bool cancelled = co_await isCancelled();
    if (cancelled) co_return;
    ++count;
    co_await Sleep(loop, Seconds{1.5});
  }
}

} // namespace

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
      value += co_await onWorker(mainLoop, [] { return 100; });
    };
    tasks.start(waitForWorker(loop, count));
    loop.runPending();
  }
  loop.finishWorkers();
  loop.advance(Seconds{10});
  EXPECT_EQ(count, 1);
}
