#pragma once

#include "platform/linux/LaneQueue.h"
#include "platform/linux/WorkerThreads.h"

namespace velmor {

/// The main loop on GLib's default main context, which the toolkit's own events come through too.
class GlibMainLoop final : public MainLoop {
public:
  GlibMainLoop() = default;

  void post(Lane lane, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> callLater(Lane lane, Seconds delay, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> callEvery(Lane lane, Seconds interval, Work work) override;
  void startWorker(Work work, Work done) override;
  void occupyActor(const Work& work) override;

  /// Whether `occupyActor` keeps the display lane going. Set once there is a window; events of
  /// the toolkit that concern the actor lane must then be posted to it.
  void serveDisplayWhileOccupied(bool serve) { servesDisplay = serve; }

  /// Serves both lanes until `quit` is called, or at once when it has been. Main thread only.
  void run();

  /// Ends `run` after the work at hand. Any thread.
  void quit();

private:
  LaneQueue& queue(Lane lane) { return lane == Lane::Display ? display : actor; }

  LaneQueue display{true};
  LaneQueue actor{false};
  std::atomic<bool> quitting = false;
  bool servesDisplay = false;
  /// Work that the display lane starts while other work occupies the actor lane waits for its turn.
  unsigned turnsGiven = 0;
  std::atomic<unsigned> turn = 0;
  /// The last member: threads that still run when the loop ends may post to the lanes.
  WorkerThreads workers;
};

} // namespace velmor
