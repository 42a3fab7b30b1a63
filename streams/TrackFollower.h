#pragma once

#include "platform/LocalService.h"
#include "platform/MainLoop.h"
#include "platform/async/Task.h"
#include "streams/TrackChanges.h"
#include "streams/TrackFeed.h"

#include <functional>
#include <memory>

namespace velmor {

/// Keeps a feed true without an end. While a window runs, the window tells; without one, or with
/// one that hangs, the follower looks itself, every 1.5 seconds. Main thread only.
class TrackFollower {
public:
  static constexpr Seconds pollInterval{1.5};

  /// `look` asks the sources; it may block, and may outlive the follower. Never throws.
  TrackFollower(MainLoop& mainLoop, LocalService& localService, std::function<TrackLook()> look,
                TrackFeed& trackFeed);

  /// Ends when the task is cancelled.
  [[nodiscard]] Task<void> run();

private:
  void approachWindow();
  void hear(const std::string& line);
  void leaveWindow();
  void take(const TrackLook& seen);

  MainLoop& loop;
  LocalService& service;
  const std::function<TrackLook()> ask;
  TrackFeed& feed;
  TrackChanges changes;
  std::shared_ptr<LocalConnection> window;
  /// The window has said something since it was approached.
  bool isTold = false;
  int silentRounds = 0;
  int roundsUntilApproach = 0;
};

} // namespace velmor
