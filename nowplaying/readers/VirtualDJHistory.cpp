#include "nowplaying/readers/VirtualDJHistory.h"

#include "base/Number.h"
#include "base/Text.h"
#include "nowplaying/shared/NowPlayingError.h"
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
  const auto [artist, title] = historyMetadata(tracklist, entry.playTime, entry.mediaPath);
  if (artist.empty() || title.empty()) throw NowPlayingError::noActiveSession();
  NowPlayingTrack track;
  track.title = text::bounded(title);
  track.artist = text::bounded(artist);
  track.source = "VirtualDJ";
  track.detection = "VirtualDJ play history";
  return track;
}

std::filesystem::path VirtualDJHistory::homeFolder(const Platform& platform) {
  const auto home = platform.environment.homeDirectory();
  auto folder = home / "Library/Application Support/VirtualDJ";
  return platform.files.exists(folder) ? folder : home / "Documents/VirtualDJ";
}

namespace {

/// The text's end cut off at its last line break; the last line is returned.
std::string_view takeLastLine(std::string_view& text) {
  const auto lineBreak = text.rfind('\n');
  const bool isOnlyLine = lineBreak == std::string_view::npos;
  const auto line = isOnlyLine ? text : text.substr(lineBreak + 1);
  text = isOnlyLine ? std::string_view() : text.substr(0, lineBreak);
  return line;
}

/// The part of the path that names the file. Lists that came from Windows have its paths.
std::string_view fileName(std::string_view path) {
  const bool isWindowsPath = path.size() > 2 && path.substr(1, 2) == ":\\";
  const auto separator = path.find_last_of(isWindowsPath ? "/\\" : "/");
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

/// What the track list's last line for that time says after it.
std::string_view displayText(std::string_view tracklist, std::string_view playTime) {
  const auto time = text::trimmed(playTime);
  if (time.empty()) return {};
  const auto prefix = std::string(time) + " : ";
  std::string_view display;
  for (const auto line : text::split(tracklist, '\n')) {
    const auto trimmed = text::trimmed(line);
    if (trimmed.starts_with(prefix)) display = text::trimmed(trimmed.substr(prefix.size()));
  }
  return display;
}

} // namespace

VirtualDJHistory::Entry VirtualDJHistory::lastEntry(std::string_view playlist) {
  Entry entry;
  auto rest = playlist;
  while (entry.mediaPath.empty() && !rest.empty()) {
    const auto line = text::trimmed(takeLastLine(rest));
    if (!line.starts_with('#')) entry.mediaPath = line;
  }
  const auto description = text::trimmed(takeLastLine(rest));
  if (entry.mediaPath.empty() || !description.starts_with("#EXTVDJ:")) return entry;
  entry.playTime = tagValue("time", description).value_or("");
  const auto started = number::parseDouble(tagValue("lastplaytime", description).value_or(""));
  if (started) entry.started = PlayPeriod::Moment(Seconds(*started));
  const auto length = number::parseDouble(tagValue("songlength", description).value_or(""));
  entry.length = Seconds(length.value_or(0));
  return entry;
}

std::optional<std::string> VirtualDJHistory::tagValue(std::string_view tag, std::string_view line) {
  const auto opening = text::asciiUppercased("<" + std::string(tag) + ">");
  const auto match = text::asciiUppercased(line).find(opening);
  if (match == std::string::npos) return std::nullopt;
  const auto start = match + opening.size();
  const auto end = line.find("</", start);
  if (end == std::string_view::npos) return std::nullopt;
  return std::string(line.substr(start, end - start));
}

std::pair<std::string, std::string> VirtualDJHistory::historyMetadata(std::string_view tracklist,
                                                                      std::string_view playTime,
                                                                      std::string_view mediaPath) {
  std::string display(displayText(tracklist, playTime));
  if (display.empty()) {
    display = std::filesystem::path(fileName(mediaPath)).stem().string();
  }
  const auto pieces = text::split(display, '-', 1);
  if (pieces.size() != 2) return {};
  return {std::string(text::trimmed(pieces[0])), std::string(text::trimmed(pieces[1]))};
}

} // namespace velmor
