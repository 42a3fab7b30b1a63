#include "nowplaying/MixxxLibrary.h"

#include "model/Number.h"
#include "model/Text.h"
#include "nowplaying/NowPlayingError.h"
#include "nowplaying/SQLiteReader.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"

namespace velmor {

namespace {

using Row = std::vector<std::string>;

std::string libraryQuery(const std::string& display) {
  return "SELECT artist, title, album, genre, CAST(COALESCE(bpm, 0) AS TEXT), key\n"
         "FROM library\n"
         "WHERE trim(COALESCE(artist, '')) || ' - ' || trim(COALESCE(title, '')) = '" +
         text::replacingAll(display, "'", "''") +
         "'\n"
         "  AND COALESCE(mixxx_deleted, 0) = 0\n"
         "ORDER BY id DESC LIMIT 1";
}

constexpr auto setLogQuery =
    "SELECT l.artist, l.title, l.album, l.genre, CAST(COALESCE(l.bpm, 0) AS TEXT), l.key,\n"
    "       pt.pl_datetime_added, CAST(COALESCE(l.duration, 0) AS TEXT)\n"
    "FROM PlaylistTracks pt\n"
    "JOIN Playlists p ON pt.playlist_id = p.id\n"
    "JOIN library l ON pt.track_id = l.id\n"
    "WHERE p.hidden = 2\n"
    "  AND COALESCE(l.mixxx_deleted, 0) = 0\n"
    "  AND trim(COALESCE(l.artist, '')) <> ''\n"
    "  AND trim(COALESCE(l.title, '')) <> ''\n"
    "  AND pt.pl_datetime_added IS NOT NULL\n"
    "ORDER BY pt.pl_datetime_added DESC\n"
    "LIMIT 1";

NowPlayingTrack named(std::string artist, std::string title) {
  NowPlayingTrack track;
  track.title = std::move(title);
  track.artist = std::move(artist);
  track.source = "Mixxx";
  track.detection = "Mixxx current-track metadata";
  return track;
}

/// A track of the first six columns that both queries share. Throws
/// NowPlayingError::noActiveSession when it has no artist or no title.
NowPlayingTrack trackOf(const Row& row) {
  if (row[0].empty() || row[1].empty()) throw NowPlayingError::noActiveSession();
  auto track = named(row[0], row[1]);
  track.album = row[2];
  track.genre = row[3];
  track.bpm = number::parseDouble(row[4]).value_or(0);
  track.key = row[5];
  return track;
}

NowPlayingTrack readSetLog(const std::filesystem::path& path, Clock::TimePoint now) {
  const auto row = SQLiteReader::readTextRow(path, setLogQuery, 8);
  const auto started = MixxxLibrary::parseMixxxTimestamp(row[6]);
  const auto duration = number::parseDouble(row[7]);
  if (!started || !duration || *duration <= 0 ||
      !PlayPeriod{*started, Seconds(*duration)}.contains(now)) {
    throw NowPlayingError::noActiveSession();
  }
  return trackOf(row);
}

/// What the first library gives that gives anything.
template <typename Reader>
std::optional<NowPlayingTrack> firstOf(const Platform& platform, Reader reader) {
  for (const auto& path : MixxxLibrary::libraryDatabasePaths(platform)) {
    try {
      return reader(path);
    } catch (const NowPlayingError&) {
      continue;
    }
  }
  return std::nullopt;
}

} // namespace

NowPlayingTrack MixxxLibrary::track(const Platform& platform, const std::string& display) {
  const auto known =
      firstOf(platform, [&](const auto& path) { return readLibrary(path, display); });
  if (known) return *known;
  auto split = splitDisplay(display);
  if (!split) throw NowPlayingError::noActiveSession();
  return named(std::move(split->first), std::move(split->second));
}

NowPlayingTrack MixxxLibrary::currentFromSetlog(const Platform& platform) {
  const auto now = platform.clock.now();
  const auto logged = firstOf(platform, [&](const auto& path) { return readSetLog(path, now); });
  if (!logged) throw NowPlayingError::noActiveSession();
  return *logged;
}

std::vector<std::filesystem::path> MixxxLibrary::libraryDatabasePaths(const Platform& platform) {
  std::vector<std::filesystem::path> existing;
  for (const auto* const folder :
       {"Library/Containers/org.mixxx.mixxx/Data/Library/Application Support/Mixxx",
        "Library/Application Support/Mixxx", ".mixxx"}) {
    auto path = platform.environment.homeDirectory() / folder / "mixxxdb.sqlite";
    if (platform.files.exists(path)) existing.push_back(std::move(path));
  }
  return existing;
}

NowPlayingTrack MixxxLibrary::readLibrary(const std::filesystem::path& path,
                                          const std::string& display) {
  return trackOf(SQLiteReader::readTextRow(path, libraryQuery(display), 6));
}

std::optional<std::pair<std::string, std::string>>
MixxxLibrary::splitDisplay(std::string_view display) {
  constexpr std::string_view separator = " - ";
  const auto position = display.find(separator);
  if (position == std::string_view::npos) return std::nullopt;
  const auto artist = text::trimmed(display.substr(0, position));
  const auto title = text::trimmed(display.substr(position + separator.size()));
  if (artist.empty() || title.empty()) return std::nullopt;
  return std::pair(std::string(artist), std::string(title));
}

} // namespace velmor
