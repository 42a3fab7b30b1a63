#include "platform/linux/LaneQueue.h"

namespace velmor {

LaneQueue::LaneQueue(bool reentrant) : source([this] { runNext(); }, reentrant) {}

void LaneQueue::post(MainLoop::Work work) {
  {
    const std::lock_guard guard(lock);
    waiting.push_back(std::move(work));
  }
  source.arm();
}

void LaneQueue::hold() {
  ++holds;
}

void LaneQueue::release() {
  if (--holds == 0) source.arm();
}

void LaneQueue::runNext() {
  if (holds > 0) return;
  MainLoop::Work work;
  {
    const std::lock_guard guard(lock);
    if (waiting.empty()) return;
    work = std::move(waiting.front());
    waiting.pop_front();
    if (!waiting.empty()) source.arm();
  }
  work();
}

} // namespace velmor
