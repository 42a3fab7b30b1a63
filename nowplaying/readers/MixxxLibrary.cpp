#include "nowplaying/readers/MixxxLibrary.h"

#include "base/Number.h"
#include "base/Text.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/SQLiteReader.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"

#include <algorithm>
#include <array>
#include <ctime>

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

/// The track that the library shows with exactly this text, the one added last when there are
/// several. Throws NowPlayingError::noActiveSession.
NowPlayingTrack readLibrary(const std::filesystem::path& path, const std::string& display,
                            const QueryLimits& limits) {
  return trackOf(SQLiteReader::readTextRow(path, libraryQuery(display), 6, limits));
}

NowPlayingTrack readSetLog(const std::filesystem::path& path, Clock::TimePoint now,
                           const QueryLimits& limits) {
  const auto row = SQLiteReader::readTextRow(path, setLogQuery, 8, limits);
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
  const auto limits = QueryLimits::untilQuit(platform);
  const auto known =
      firstOf(platform, [&](const auto& path) { return readLibrary(path, display, limits); });
  if (known) return *known;
  auto split = splitDisplay(display);
  if (!split) throw NowPlayingError::noActiveSession();
  return named(std::move(split->first), std::move(split->second));
}

NowPlayingTrack MixxxLibrary::currentFromSetlog(const Platform& platform) {
  const auto now = platform.clock.now();
  const auto limits = QueryLimits::untilQuit(platform);
  const auto logged =
      firstOf(platform, [&](const auto& path) { return readSetLog(path, now, limits); });
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

namespace {

/// What a date and time may look like; a 0 stands for any digit.
constexpr std::array<std::string_view, 3> shapes{"0000-00-00 00:00:00", "0000-00-00T00:00:00.000Z",
                                                 "0000-00-00T00:00:00Z"};
constexpr std::size_t fractionPosition = 20;

bool hasShape(std::string_view text, std::string_view shape) {
  constexpr auto fits = [](char character, char expected) {
    return expected == '0' ? character >= '0' && character <= '9' : character == expected;
  };
  return std::ranges::equal(text, shape, fits);
}

int digits(std::string_view text, std::size_t position, std::size_t length) {
  return number::parseInteger<int>(text.substr(position, length)).value_or(0);
}

bool isSameMoment(const std::tm& one, const std::tm& other) {
  return one.tm_year == other.tm_year && one.tm_mon == other.tm_mon &&
         one.tm_mday == other.tm_mday && one.tm_hour == other.tm_hour &&
         one.tm_min == other.tm_min && one.tm_sec == other.tm_sec;
}

} // namespace

// A final Z says universal time, yet every form is read in local time: the log has always been
// read so, and another reading would find other tracks playing.
std::optional<PlayPeriod::Moment> MixxxLibrary::parseMixxxTimestamp(std::string_view text) {
  const auto date = text::trimmed(text);
  const auto fits = [&](std::string_view shape) { return hasShape(date, shape); };
  if (std::ranges::none_of(shapes, fits)) return std::nullopt;

  std::tm written{};
  written.tm_year = digits(date, 0, 4) - 1900;
  written.tm_mon = digits(date, 5, 2) - 1;
  written.tm_mday = digits(date, 8, 2);
  written.tm_hour = digits(date, 11, 2);
  written.tm_min = digits(date, 14, 2);
  written.tm_sec = digits(date, 17, 2);
  written.tm_isdst = -1;
  std::tm local = written;
  const auto seconds = std::mktime(&local);
  // A day or an hour that the calendar does not have comes out as another one.
  if (!isSameMoment(written, local)) return std::nullopt;
  const bool hasFraction = hasShape(date, shapes[1]);
  const double fraction = hasFraction ? digits(date, fractionPosition, 3) / 1000.0 : 0;
  return PlayPeriod::Moment(Seconds(static_cast<double>(seconds) + fraction));
}

} // namespace velmor
