#pragma once

#include "platform/MainLoop.h"
#include "platform/linux/WakeSource.h"

#include <deque>
#include <mutex>

namespace velmor {

/// The work that waits for one lane of the main loop, run in the order of posting, one piece in
/// each turn of the loop.
class LaneQueue {
public:
  /// With `reentrant` the lane goes on inside loops that run within a piece of its work.
  explicit LaneQueue(bool reentrant);

  /// Any thread.
  void post(MainLoop::Work work);

  /// Between the two calls nothing of the lane runs; calls may be nested. Main thread only.
  void hold();
  void release();

private:
  void runNext();

  std::mutex lock;
  std::deque<MainLoop::Work> waiting;
  int holds = 0;
  WakeSource source;
};

} // namespace velmor
