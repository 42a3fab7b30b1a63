#include "nowplaying/readers/DjayDetector.h"

#include "base/Number.h"
#include "nowplaying/readers/TsafArchive.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "nowplaying/shared/SQLiteReader.h"
#include "platform/Clock.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"
#include "platform/RunningApplications.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace velmor {

namespace {

constexpr auto historyQuery = "SELECT hex(data) FROM database2 WHERE collection = "
                              "'historySessionItems' ORDER BY rowid DESC LIMIT 1";

std::string bpmQuery(const std::string& titleID) {
  return "SELECT CAST(indexes.bpm AS TEXT)\n"
         "FROM secondaryIndex_mediaItemAnalyzedDataIndex AS indexes\n"
         "JOIN database2 AS items ON items.rowid = indexes.rowid\n"
         "WHERE items.collection = 'mediaItemAnalyzedData' AND items.key = '" +
         titleID + "' LIMIT 1";
}

bool isHexDigit(char character) {
  constexpr std::string_view digits = "0123456789abcdefABCDEF";
  return digits.find(character) != std::string_view::npos;
}

/// Archives have a few hundred bytes; each takes two digits.
constexpr std::size_t mostDigits = 1'000'000;

std::optional<HistoryItem> readNewestItem(const std::filesystem::path& path, QueryLimits limits) {
  limits.mostCharacters = mostDigits;
  const auto row = SQLiteReader::readTextRow(path, historyQuery, 1, limits);
  const auto blob = TsafArchive::bytes(row[0]);
  return blob ? TsafArchive::parseHistoryItem(*blob) : std::nullopt;
}

std::optional<RunningApplication> djayApplication(const Platform& platform) {
  return ProcessUtils::application(platform, {.bundleIdentifier = "com.algoriddim.djay-iphone-free",
                                              .identifierFragment = "algoriddim.djay",
                                              .names = {"djay pro", "djay"}});
}

} // namespace

NowPlayingTrack DjayDetector::current(const Platform& platform) {
  if (!isRunning(platform)) throw NowPlayingError::noActiveSession();
  const auto limits = QueryLimits::untilQuit(platform);
  for (const auto& path : mediaLibraryPaths(platform)) {
    if (!platform.files.exists(path)) continue;
    const auto item = readNewestItem(path, limits);
    if (!item || !item->period.contains(platform.clock.now())) continue;
    NowPlayingTrack track;
    track.title = item->title;
    track.artist = item->artist;
    track.bpm = readBPM(path, item->titleID);
    track.source = "djay Pro";
    track.detection = "djay Pro play history";
    return track;
  }
  throw NowPlayingError::noActiveSession();
}

bool DjayDetector::isRunning(const Platform& platform) {
  return djayApplication(platform) ||
         ProcessUtils::isRunning(platform, {"djay", "djay Pro", "djayapp"});
}

std::vector<std::filesystem::path> DjayDetector::mediaLibraryPaths(const Platform& platform) {
  const auto folder = platform.environment.homeDirectory() / "Music/djay";
  return {folder / "djay Media Library.djayMediaLibrary/MediaLibrary.db",
          folder / "djay Media Library/MediaLibrary.db"};
}

double DjayDetector::readBPM(const std::filesystem::path& path, const std::string& titleID) {
  constexpr std::size_t titleIDLength = 32;
  if (titleID.size() != titleIDLength || !std::ranges::all_of(titleID, isHexDigit)) return 0;
  try {
    const auto row = SQLiteReader::readTextRow(path, bpmQuery(titleID), 1);
    return number::parseDouble(row[0]).value_or(0);
  } catch (const NowPlayingError&) {
    return 0;
  }
}

} // namespace velmor
