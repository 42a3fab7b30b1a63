#pragma once

#include "model/Records.h"
#include "nowplaying/readers/PlayPeriod.h"
#include "platform/Platform.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

/// Mixxx's library database: its tracks, and the log of what was played in a set. Stateless; any
/// thread.
class MixxxLibrary {
public:
  /// The track that Mixxx's window shows as `display`: from the first library that has it, else
  /// from the text alone. Throws NowPlayingError::noActiveSession when the text has no artist or no
  /// title either.
  [[nodiscard]] static NowPlayingTrack track(const Platform& platform, const std::string& display);

  /// The newest track of the set log, while it can still be playing. Throws
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack currentFromSetlog(const Platform& platform);

  /// The libraries that exist, the preferred one first.
  [[nodiscard]] static std::vector<std::filesystem::path>
  libraryDatabasePaths(const Platform& platform);

  /// Artist and title of "Artist - Title", split at the first " - "; nothing when one is missing.
  [[nodiscard]] static std::optional<std::pair<std::string, std::string>>
  splitDisplay(std::string_view display);

  /// The moment of a date and time of the set log, read in the local time zone; nothing when the
  /// text is not one, or names a day or an hour that does not exist.
  [[nodiscard]] static std::optional<PlayPeriod::Moment> parseMixxxTimestamp(std::string_view text);
};

} // namespace velmor
