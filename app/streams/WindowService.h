#pragma once

#include "app/AppController.h"
#include "platform/LocalService.h"
#include "platform/async/TaskGroup.h"
#include "streams/TrackFeed.h"
#include "streams/WindowLine.h"

#include <map>
#include <memory>

namespace velmor {

/// Lets Velmor's other programs ask the running window, so that none looks a second time and all
/// name the same track. Nobody learns a setting or a key, and nobody can change one. Main thread
/// only.
class WindowService {
public:
  WindowService(const Platform& thePlatform, std::shared_ptr<AppController> theController);
  WindowService(const WindowService&) = delete;
  WindowService& operator=(const WindowService&) = delete;
  ~WindowService();

  /// Offers it, unless another window does already. The service outlives the main loop's run.
  void start(LocalService& localService);

private:
  using Connection = std::shared_ptr<LocalConnection>;
  struct Guest {
    Connection connection;
    bool follows = false;
  };

  void welcome(const Connection& connection);
  void part(int number);
  void answer(int number, const std::string& line);
  void beginToTell(Guest& guest);
  void tellFollowers(const WindowLine& news);
  void followersHaveChanged();
  void take(const TrackLook& seen);
  [[nodiscard]] bool isTrackFresh() const;
  [[nodiscard]] Task<void> answerNow(Connection connection);
  [[nodiscard]] Task<void> answerSuggest(Connection connection, bool fromCrate);

  Platform platform;
  const std::shared_ptr<AppController> controller;
  TrackFeed feed;
  TrackChanges changes;
  Clock::TimePoint lastLook;
  std::map<int, Guest> guests;
  int lastNumber = 0;
  std::unique_ptr<Timer> heartbeat;
  TaskGroup tasks;
};

} // namespace velmor
