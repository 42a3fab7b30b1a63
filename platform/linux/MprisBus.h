#pragma once

#include "platform/MainLoop.h"
#include "platform/linux/GlibHandles.h"
#include "platform/linux/MprisPlayer.h"
#include "platform/linux/PlaybackHistory.h"

#include <mutex>
#include <set>
#include <stop_token>
#include <vector>

namespace velmor {

class BusWait;

/// The media players on one session bus. The connection stays open between readings and notes who
/// begins to play. Any thread.
class MprisBus {
public:
  MprisBus(std::string busAddress, std::stop_token quitToken);

  [[nodiscard]] const std::string& address() const { return location; }

  /// All players that answer within the time; nothing when the bus itself does not. A player that
  /// once failed to answer is hardly waited for until it has answered again.
  [[nodiscard]] std::optional<std::vector<MprisPlayer>> players(Seconds timeout);

private:
  struct Reading;

  [[nodiscard]] BusConnectionPtr connected(BusWait& wait);
  void followPlayback(const BusConnectionPtr& made, BusWait& wait);
  [[nodiscard]] std::vector<Reading> plannedReadings(const std::vector<std::string>& names) const;
  [[nodiscard]] std::vector<MprisPlayer> finish(const std::vector<Reading>& readings);

  const std::string location;
  const std::stop_token quit;
  const std::shared_ptr<PlaybackHistory> history = std::make_shared<PlaybackHistory>();
  mutable std::mutex lock;
  BusConnectionPtr connection;
  /// Bus names of players that did not answer when they were last asked.
  std::set<std::string> hung;
};

} // namespace velmor
