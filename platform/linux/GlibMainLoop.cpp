#include "platform/linux/GlibMainLoop.h"

#include "platform/linux/LaneTimer.h"

#include <glib.h>

namespace velmor {

void GlibMainLoop::post(Lane lane, Work work) {
  queue(lane).post(std::move(work));
}

std::unique_ptr<Timer> GlibMainLoop::callLater(Lane lane, Seconds delay, Work work) {
  return std::make_unique<LaneTimer>(queue(lane), delay, std::nullopt, std::move(work));
}

std::unique_ptr<Timer> GlibMainLoop::callEvery(Lane lane, Seconds interval, Work work) {
  return std::make_unique<LaneTimer>(queue(lane), interval, interval, std::move(work));
}

void GlibMainLoop::startWorker(Work work, Work done) {
  workers.start([this, run = std::move(work), whenDone = std::move(done)]() mutable {
    run();
    // Released here, since only the second half may belong to the main thread.
    run = nullptr;
    actor.post(std::move(whenDone));
  });
}

void GlibMainLoop::occupyActor(const Work& work) {
  if (!servesDisplay) {
    work();
    return;
  }
  std::atomic<bool> finished = false;
  actor.hold();
  {
    const std::jthread worker([&, mine = turnsGiven++]() noexcept {
      for (auto now = turn.load(); now != mine; now = turn.load())
        turn.wait(now);
      work();
      turn = mine + 1;
      turn.notify_all();
      finished = true;
      g_main_context_wakeup(nullptr);
    });
    while (!finished)
      g_main_context_iteration(nullptr, TRUE);
  }
  actor.release();
}

void GlibMainLoop::run() {
  while (!quitting)
    g_main_context_iteration(nullptr, TRUE);
}

void GlibMainLoop::quit() {
  quitting = true;
  g_main_context_wakeup(nullptr);
}

} // namespace velmor
