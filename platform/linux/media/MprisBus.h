#pragma once

#include "platform/MainLoop.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/media/MprisPlayer.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace velmor {

/// Remembers in which order players began to play. Players go by their unique names on the bus.
/// Any thread.
class PlaybackHistory {
public:
  /// A player has said that it plays now, or no longer does.
  void statusChanged(const std::string& player, bool playing);

  /// The players that there are, and which of them play. Those not seen before get no place in
  /// the order, since nobody knows when they began; those that are gone are forgotten.
  void update(const std::map<std::string, bool>& playing);

  /// The player's place in the order, from 1; 0 when it has none.
  [[nodiscard]] std::uint64_t beganPlaying(const std::string& player) const;

private:
  struct Entry {
    bool plays = false;
    std::uint64_t began = 0;
  };

  void note(Entry& entry, bool playing);

  mutable std::mutex lock;
  std::map<std::string, Entry> entries;
  std::uint64_t beginnings = 0;
};

/// Notes when players answer that have been given up, so that one that is merely slow does not stay
/// out for good. Players go by their unique names on the bus. Any thread.
class LateAnswers {
public:
  using Moment = std::chrono::steady_clock::time_point;

  /// The player has not answered. It would have been in time until `deadline`; while an earlier
  /// question is open too, the deadline of that one counts.
  void missed(const std::string& player, std::chrono::time_point<Moment::clock, Seconds> deadline);

  /// The player has answered something.
  void answered(const std::string& player, Moment now);

  /// True when its last late answer was in time.
  [[nodiscard]] bool isWorthWaitingFor(const std::string& player) const;

private:
  mutable std::mutex lock;
  std::map<std::string, std::chrono::time_point<Moment::clock, Seconds>> awaited;
  std::set<std::string> quick;
};

/// The media players on one session bus. The connection stays open between readings and notes who
/// begins to play. Any thread.
class MprisBus {
public:
  MprisBus(std::string busAddress, std::stop_token quitToken);

  [[nodiscard]] const std::string& address() const { return location; }

  /// All players that answer within the time; nothing when the bus itself does not. A player that
  /// once failed to answer is hardly waited for until it has answered again within the time.
  [[nodiscard]] std::optional<std::vector<MprisPlayer>> players(Seconds timeout);

private:
  struct Reading;

  [[nodiscard]] BusConnectionPtr connected(BusWait& wait);
  void followPlayback(const BusConnectionPtr& made, BusWait& wait);
  [[nodiscard]] std::vector<Reading> plannedReadings(const std::vector<std::string>& names) const;
  [[nodiscard]] std::vector<MprisPlayer> finish(const std::vector<Reading>& readings,
                                                std::chrono::steady_clock::time_point asked,
                                                Seconds timeout);

  const std::string location;
  const std::stop_token quit;
  const std::shared_ptr<PlaybackHistory> history = std::make_shared<PlaybackHistory>();
  mutable std::mutex lock;
  BusConnectionPtr connection;
  const std::shared_ptr<LateAnswers> late = std::make_shared<LateAnswers>();
  /// Players that did not answer when they were last asked: bus name and unique name.
  std::map<std::string, std::string> hung;
};

class Environment;

/// The one reading side of the media players on the user's session bus, shared by all who ask: it
/// remembers who hung and who began to play. Any thread.
class MprisBusSource {
public:
  /// `quitToken` ends every reading at once.
  MprisBusSource(const Environment& theEnvironment, std::stop_token quitToken);

  /// Null when there is no session bus.
  [[nodiscard]] std::shared_ptr<MprisBus> current();

  /// Notes whether the player with this name answered. True when it did not for the first time
  /// since it last did: what goes wrong at every look is told once.
  [[nodiscard]] bool isNewFailure(const std::string& player, bool answered);

private:
  const Environment& environment;
  std::stop_token quit;
  std::mutex lock;
  std::shared_ptr<MprisBus> bus;
  std::set<std::string> failed;
};

} // namespace velmor
