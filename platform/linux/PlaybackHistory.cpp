#include "platform/linux/PlaybackHistory.h"

namespace velmor {

void PlaybackHistory::statusChanged(const std::string& player, bool playing) {
  const std::lock_guard guard(lock);
  note(entries[player], playing);
}

void PlaybackHistory::update(const std::map<std::string, bool>& playing) {
  const std::lock_guard guard(lock);
  std::erase_if(entries, [&](const auto& entry) { return !playing.contains(entry.first); });
  for (const auto& [player, plays] : playing) {
    const auto [entry, isNew] = entries.try_emplace(player, Entry{.plays = plays});
    if (!isNew) note(entry->second, plays);
  }
}

std::uint64_t PlaybackHistory::beganPlaying(const std::string& player) const {
  const std::lock_guard guard(lock);
  const auto entry = entries.find(player);
  return entry == entries.end() ? 0 : entry->second.began;
}

void PlaybackHistory::note(Entry& entry, bool playing) {
  // Many players repeat at every track that they play: only the change counts.
  if (playing && !entry.plays) entry.began = ++beginnings;
  entry.plays = playing;
}

} // namespace velmor
