#pragma once

#include "model/Records.h"
#include "nowplaying/readers/PlayPeriod.h"
#include "platform/Platform.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velmor {

/// VirtualDJ's play history: for each session a list of the tracks that were started, and beside
/// the lists one readable track list, which spells artist and title better. Stateless; any thread.
class VirtualDJHistory {
public:
  /// The last entry of a session's list.
  struct Entry {
    /// The media file's path, or an address such as "netsearch://dz123"; "" when there is none.
    std::string mediaPath;
    /// The time of day at which it was started, as the readable track list writes it; "" when
    /// missing.
    std::string playTime;
    /// Nothing when the entry does not say when it was started.
    std::optional<PlayPeriod::Moment> started;
    /// 0 when missing.
    Seconds length{0};
  };

  /// The newest track of the history, while it can still be playing. Throws
  /// NowPlayingError::noActiveSession.
  [[nodiscard]] static NowPlayingTrack currentHistory(const Platform& platform);

  /// The folder of VirtualDJ's own files; its History folder holds the lists.
  [[nodiscard]] static std::filesystem::path homeFolder(const Platform& platform);

  /// The last entry of a list's text. Any text is safe.
  [[nodiscard]] static Entry lastEntry(std::string_view playlist);

  /// The text between `<tag>`, in upper or lower case, and the next closing tag; nothing when one
  /// of them is missing.
  [[nodiscard]] static std::optional<std::string> tagValue(std::string_view tag,
                                                           std::string_view line);

  /// Artist and title: from the last line of the track list with this time, else from the media
  /// file's name; two empty texts when neither tells them.
  [[nodiscard]] static std::pair<std::string, std::string>
  historyMetadata(std::string_view tracklist, std::string_view playTime,
                  std::string_view mediaPath);
};

} // namespace velmor
