#pragma once

#include "model/Records.h"
#include "nowplaying/SeratoDetector.h"
#include "platform/Platform.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velmor {

/// VirtualDJ's play history: one list of started tracks a session, and a readable track list
/// beside them. Stateless; any thread.
class VirtualDJHistory {
public:
  /// The last entry of a history list.
  struct Entry {
    /// The media file's path, or an address such as "netsearch://dz123"; "" when there is none.
    std::string mediaPath;
    /// The time as the readable track list shows it; "" when missing.
    std::string playTime;
    /// Nothing when the entry does not say when it was started.
    std::optional<PlayPeriod::Moment> started;
    /// 0 when missing.
    Seconds length{0};
  };

  /// The newest track of the history, if it can still be playing. Throws
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack currentHistory(const Platform& platform);

  [[nodiscard]] static std::filesystem::path homeFolder(const Platform& platform);

  [[nodiscard]] static Entry lastEntry(std::string_view playlist);

  /// What stands between `<tag>` and the next closing tag; the tag's case does not matter.
  [[nodiscard]] static std::optional<std::string> tagValue(std::string_view tag,
                                                           std::string_view line);

  /// Artist and title of the track list's last line for that time, else of the media file's name;
  /// two empty texts when neither tells.
  [[nodiscard]] static std::pair<std::string, std::string>
  historyMetadata(std::string_view tracklist, std::string_view playTime,
                  std::string_view mediaPath);
};

} // namespace velmor
