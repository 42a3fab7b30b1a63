#pragma once

#include "model/Records.h"
#include "nowplaying/RekordboxDetector.h"
#include "platform/Platform.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// Finds the track that is playing now. It asks one source after the other, in a fixed order, and
/// remembers nothing between calls but rekordbox's clocks. Any thread; calls may overlap.
class NowPlayingDetector {
public:
  /// Playing times in seconds, by deck fingerprint.
  using Elapsed = std::map<std::string, std::int64_t>;

  explicit NowPlayingDetector(const Platform& system) : platform(system) {}

  /// The playing track. Blocks until the sources have answered, which may take seconds. Throws
  /// NowPlayingError, or LaunchError when a media player's script could not be run.
  [[nodiscard]] NowPlayingTrack current();

  /// The deck whose clock moved since the previous poll, or on the first poll runs at all; of
  /// several the one that has played the shortest, then the upper.
  [[nodiscard]] static std::optional<RekordboxDeck>
  selectRekordboxDeck(const std::vector<RekordboxDeck>& decks, const Elapsed& previous);

private:
  [[nodiscard]] NowPlayingTrack currentRekordbox(const Platform& now);
  [[nodiscard]] std::optional<RekordboxDeck>
  trackRekordbox(const std::vector<RekordboxDeck>& decks);
  void resetRekordboxState();

  Platform platform;

  /// Guards the members below, since each poll runs on a thread of its own; never held while a
  /// window is read.
  std::mutex lock;
  /// The clocks of the previous poll.
  Elapsed rekordboxElapsed;
  /// The deck that was last reported.
  std::string rekordboxCurrent;
  /// Polls in a row in which no deck could be selected.
  std::int64_t rekordboxUnchanged = 0;
};

} // namespace velmor
