#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

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

} // namespace velmor
