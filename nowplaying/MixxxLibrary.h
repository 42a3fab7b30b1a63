#pragma once

#include "model/Records.h"
#include "nowplaying/SeratoDetector.h"
#include "platform/Platform.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

/// Mixxx's library database: its tracks and its log of the set. Stateless; any thread.
class MixxxLibrary {
public:
  /// The track of a window's display text, from the first library that knows it, else from the
  /// text alone. Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack track(const Platform& platform, const std::string& display);

  /// The newest track of the set log, if it can still be playing. Throws
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack currentFromSetlog(const Platform& platform);

  /// The libraries that exist, the preferred one first.
  [[nodiscard]] static std::vector<std::filesystem::path>
  libraryDatabasePaths(const Platform& platform);

  /// The track that this library shows with exactly this text, the one added last when there are
  /// several. Throws NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack readLibrary(const std::filesystem::path& path,
                                                   const std::string& display);

  /// Artist and title of "Artist - Title"; nothing when one is missing.
  [[nodiscard]] static std::optional<std::pair<std::string, std::string>>
  splitDisplay(std::string_view display);

  /// The moment of a set log's date and time, read in the local time zone; nothing when it is none.
  [[nodiscard]] static std::optional<PlayPeriod::Moment> parseMixxxTimestamp(std::string_view text);
};

} // namespace velmor
