#pragma once

#include "model/Records.h"
#include "nowplaying/RekordboxDetector.h"
#include "platform/Platform.h"
#include "platform/RunningApplications.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// The running applications as they were at the first question: listing them asks the desktop and
/// every media player, which is too dear to be done again for each source of one look. One thread.
class ApplicationsSnapshot : public RunningApplications {
public:
  explicit ApplicationsSnapshot(RunningApplications& applications) : live(applications) {}

  std::vector<RunningApplication> list() override {
    if (!taken) taken = live.list();
    return *taken;
  }

private:
  RunningApplications& live;
  std::optional<std::vector<RunningApplication>> taken;
};

/// Finds the track that is playing now. It asks one source after the other, in a fixed order, and
/// remembers nothing between calls but rekordbox's clocks. Any thread.
class NowPlayingDetector {
public:
  using Elapsed = std::map<std::string, std::int64_t>;

  explicit NowPlayingDetector(const Platform& system);

  /// The playing track. Blocks until the sources have answered, which may take seconds. Throws
  /// NowPlayingError, or LaunchError when a media player's script could not be run.
  [[nodiscard]] NowPlayingTrack current();

  /// The deck whose clock moved since the previous poll, or on the first poll runs at all; of
  /// several the one that has played the shortest, then the upper.
  [[nodiscard]] static std::optional<RekordboxDeck>
  selectRekordboxDeck(const std::vector<RekordboxDeck>& decks, const Elapsed& previous);

  [[nodiscard]] static std::optional<RekordboxDeck>
  rekordboxDeckByFingerprint(const std::vector<RekordboxDeck>& decks,
                             const std::string& fingerprint);

private:
  NowPlayingTrack currentRekordbox();
  std::optional<RekordboxDeck> trackRekordbox(const std::vector<RekordboxDeck>& decks);
  void resetRekordboxState();

  const Platform& platform;

  /// Guards the members below; never held while a window is read.
  std::mutex lock;
  /// The clocks of the previous poll, by deck fingerprint.
  Elapsed rekordboxElapsed;
  /// The deck that was last reported.
  std::string rekordboxCurrent;
  /// Polls in a row in which no deck could be selected.
  std::int64_t rekordboxUnchanged = 0;
};

} // namespace velmor
