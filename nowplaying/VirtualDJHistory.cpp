#include "nowplaying/VirtualDJHistory.h"

#include "model/Text.h"
#include "nowplaying/NowPlayingError.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"

#include <algorithm>

namespace velmor {

namespace {

/// The file's text without a byte-order mark; nothing when it cannot be read or is not UTF-8.
std::optional<std::string> readText(const Platform& platform, const std::filesystem::path& path) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  auto content = platform.files.read(path);
  if (!content || !text::isValidUtf8(*content)) return std::nullopt;
  if (content->starts_with(byteOrderMark)) content->erase(0, byteOrderMark.size());
  return content;
}

bool isPlaylist(const FolderEntry& entry) {
  return text::lowercased(entry.path.extension().string()) == ".m3u";
}

std::optional<std::string> readNewestPlaylist(const Platform& platform,
                                              const std::filesystem::path& folder) {
  auto files = platform.files.list(folder);
  std::erase_if(files, [](const auto& entry) { return !isPlaylist(entry); });
  // A file without a date counts as older than any other.
  const auto newest = std::ranges::max_element(files, {}, &FolderEntry::modified);
  return newest == files.end() ? std::nullopt : readText(platform, newest->path);
}

} // namespace

NowPlayingTrack VirtualDJHistory::currentHistory(const Platform& platform) {
  const auto folder = homeFolder(platform) / "History";
  const auto playlist = readNewestPlaylist(platform, folder);
  if (!playlist) throw NowPlayingError::noActiveSession();
  const auto entry = lastEntry(*playlist);
  if (entry.mediaPath.empty() || !entry.started || entry.length <= Seconds{0} ||
      !PlayPeriod{*entry.started, entry.length}.contains(platform.clock.now())) {
    throw NowPlayingError::noActiveSession();
  }
  const auto tracklist = readText(platform, folder / "tracklist.txt").value_or("");
  auto [artist, title] = historyMetadata(tracklist, entry.playTime, entry.mediaPath);
  if (artist.empty() || title.empty()) throw NowPlayingError::noActiveSession();
  NowPlayingTrack track;
  track.title = std::move(title);
  track.artist = std::move(artist);
  track.source = "VirtualDJ";
  track.detection = "VirtualDJ play history";
  return track;
}

std::filesystem::path VirtualDJHistory::homeFolder(const Platform& platform) {
  const auto home = platform.environment.homeDirectory();
  auto folder = home / "Library/Application Support/VirtualDJ";
  return platform.files.exists(folder) ? folder : home / "Documents/VirtualDJ";
}

} // namespace velmor
