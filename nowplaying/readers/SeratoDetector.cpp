#include "nowplaying/readers/SeratoDetector.h"

#include "base/Number.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "nowplaying/shared/SQLiteReader.h"
#include "platform/Environment.h"

namespace velmor {

namespace {

constexpr auto query =
    "SELECT name, artist, album, genre, CAST(COALESCE(bpm, 0) AS TEXT), key, app_name\n"
    "FROM history_entry\n"
    "WHERE played = 1 AND end_time = -1 AND trim(name) <> '' AND trim(artist) <> ''\n"
    "ORDER BY start_time DESC, id DESC LIMIT 1";

/// The newest playing track of this history. Throws NowPlayingError::noActiveSession.
NowPlayingTrack read(const std::filesystem::path& path, const QueryLimits& limits) {
  const auto row = SQLiteReader::readTextRow(path, query, 7, limits);
  NowPlayingTrack track;
  track.title = row[0];
  track.artist = row[1];
  if (track.title.empty() || track.artist.empty()) throw NowPlayingError::noActiveSession();
  track.album = row[2];
  track.genre = row[3];
  track.bpm = number::parseDouble(row[4]).value_or(0);
  track.key = row[5];
  track.source = row[6];
  track.detection = "Serato performance history";
  return track;
}

} // namespace

NowPlayingTrack SeratoDetector::current(const Platform& platform) {
  if (!isRunning(platform)) throw NowPlayingError::noActiveSession();
  const auto limits = QueryLimits::untilQuit(platform);
  for (const auto& path : historyPaths(platform)) {
    try {
      return read(path, limits);
    } catch (const NowPlayingError&) {
      continue;
    }
  }
  throw NowPlayingError::noActiveSession();
}

bool SeratoDetector::isRunning(const Platform& platform) {
  return ProcessUtils::isRunning(platform, {"Serato DJ Pro", "Serato DJ Lite", "Serato DJ"});
}

std::vector<std::filesystem::path> SeratoDetector::historyPaths(const Platform& platform) {
  const auto home = platform.environment.homeDirectory();
  return {home / "Music/_Serato_/Library/master.sqlite",
          home / "Library/Application Support/Serato/Library/master.sqlite"};
}

} // namespace velmor
