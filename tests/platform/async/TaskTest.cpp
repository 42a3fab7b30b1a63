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

TEST(Task, GoesOnWithWhatBlockingWorkGaveBeforeAnythingElse) {
  FakeMainLoop loop;
  TaskGroup tasks(loop);
  std::string happened;
  const auto task = [&]() -> Task<void> {
    loop.post(MainLoop::Lane::Actor, [&] { happened += " other"; });
    const auto given = co_await occupied(loop, [] { return std::string("given"); });
    happened += given;
    try {
      co_await occupied(loop, []() -> int { throw std::runtime_error(" thrown"); });
    } catch (const std::runtime_error& error) {
      happened += error.what();
    }
  };
  tasks.start(task());
  loop.runPending();
  EXPECT_EQ(happened, "given thrown other");
}

TEST(Task, DestroyingTheGroupEndsWhatStillWaits) {
  FakeMainLoop loop;
  loop.holdWorkers();
  int count = 0;
  std::optional<TaskGroup> tasks(loop);
  tasks->start(countSleeps(loop, count));
  const auto waitForWorker = [&]() -> Task<void> {
    count += co_await onWorker(loop, [] { return 100; });
  };
  const auto waitForLane = [&]() -> Task<void> {
    count += co_await occupied(loop, [&] {
      tasks.reset();
      return 1000;
    });
  };
  tasks->start(waitForWorker());
  tasks->start(waitForLane());
  loop.runPending();
  loop.finishWorkers();
  loop.advance(Seconds{10});
  EXPECT_EQ(count, 1);
}
