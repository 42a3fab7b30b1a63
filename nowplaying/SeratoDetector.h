#pragma once

#include "model/Records.h"
#include "platform/Clock.h"
#include "platform/MainLoop.h"
#include "platform/Platform.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace velmor {

/// When a history says that a track was started, and how long it lasts.
struct PlayPeriod {
  /// Counted in a type that no number found in a file can overflow.
  using Moment = std::chrono::time_point<std::chrono::system_clock, Seconds>;

  Moment started;
  Seconds duration{0};

  /// True while the track can still be playing, both ends included.
  [[nodiscard]] bool contains(Clock::TimePoint now) const {
    return started <= now && now <= started + duration;
  }
};

/// The newest entry of djay Pro's history.
struct HistoryItem {
  std::string title;
  std::string artist;
  /// 32 lower-case hexadecimal digits that identify the media item; "" when there are none.
  std::string titleID;
  PlayPeriod period;
};

/// Reads the play history of Serato. Stateless; any thread.
class SeratoDetector {
public:
  /// The newest track that is still open in the history. Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack current(const Platform& platform);

  [[nodiscard]] static bool isRunning(const Platform& platform);

  /// Where the history may lie, in the order in which it is looked for.
  [[nodiscard]] static std::vector<std::filesystem::path> historyPaths(const Platform& platform);

  /// What `current` gives, from the database at this path.
  [[nodiscard]] static NowPlayingTrack read(const std::filesystem::path& path);
};

} // namespace velmor
