#include "model/Number.h"
#include "model/Text.h"
#include "nowplaying/VirtualDJHistory.h"

#include <algorithm>

namespace velmor {

namespace {

bool isSameLetter(char one, char other) {
  constexpr auto lowercased = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  };
  return lowercased(one) == lowercased(other);
}

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
  const auto opening = "<" + std::string(tag) + ">";
  const auto* const match =
      std::search(line.begin(), line.end(), opening.begin(), opening.end(), isSameLetter);
  if (match == line.end()) return std::nullopt;
  const auto start = static_cast<std::size_t>(match - line.begin()) + opening.size();
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
