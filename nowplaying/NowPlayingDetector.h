#pragma once

#include "model/Records.h"
#include "nowplaying/readers/RekordboxDetector.h"
#include "platform/Clock.h"
#include "platform/MainLoop.h"
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
  /// Playing times in seconds, by deck fingerprint. The same track may be on several decks.
  using Elapsed = std::multimap<std::string, std::int64_t>;

  explicit NowPlayingDetector(const Platform& system) : platform(system) {}

  /// The playing track. Blocks until the sources have answered, which may take seconds. Throws
  /// NowPlayingError, or LaunchError when a media player's script could not be run.
  [[nodiscard]] NowPlayingTrack current();

  /// Reads rekordbox's clocks when they would decide and are not known, since nobody has looked for
  /// a while. True when they are known now: call `current` after `secondLook`, for it takes two
  /// looks to tell a deck that plays from one that is paused. Blocks as `current` does. Never
  /// throws.
  [[nodiscard]] bool noteClocks();
  static constexpr Seconds secondLook{1.5};

  /// The deck whose clock moved since the previous poll, or on the first poll runs at all; of
  /// several the one that has played the shortest, then the upper.
  [[nodiscard]] static std::optional<RekordboxDeck>
  selectRekordboxDeck(const std::vector<RekordboxDeck>& decks, const Elapsed& previous);

private:
  [[nodiscard]] NowPlayingTrack currentRekordbox(const Platform& now);
  [[nodiscard]] std::optional<RekordboxDeck>
  trackRekordbox(const std::vector<RekordboxDeck>& decks);
  // While the lock is held.
  void forgetWhatIsOld();
  void remember(const std::vector<RekordboxDeck>& decks);
  void forgetClocks();

  void resetRekordboxState();

  Platform platform;

  /// Guards the members below, since each poll runs on a thread of its own; never held while a
  /// window is read.
  std::mutex lock;
  /// The clocks of the previous poll, and when that was.
  Elapsed rekordboxElapsed;
  Clock::TimePoint rekordboxSeen;
  /// The deck that was last reported.
  std::string rekordboxCurrent;
  /// Polls in a row in which no deck could be selected.
  std::int64_t rekordboxUnchanged = 0;
};

} // namespace velmor
