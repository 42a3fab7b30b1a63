#include "crate/sources/MixxxCrate.h"

#include "base/Database.h"
#include "crate/tracks/CrateDates.h"
#include "crate/tracks/TrackIdentity.h"

#include <algorithm>
#include <unordered_map>

namespace velmor {

namespace {

/// Mixxx locks its library for moments while it scans.
constexpr std::chrono::milliseconds patience{3000};
/// The largest libraries are read in a small part of this.
constexpr std::chrono::seconds longestRead{60};

struct TrackRow {
  std::int64_t id = 0;
  CrateTrack track;
  /// 1 to 12 from C major up, 13 to 24 from C minor up; 0 when there is none.
  std::int64_t keyNumber = 0;
  std::string keyText;
  std::string year;
  std::string added;
};

struct PlayRow {
  std::int64_t night = 0;
  std::int64_t track = 0;
  std::string when;
};

struct ListRow {
  std::string name;
  std::int64_t track = 0;
};

struct Rows {
  std::vector<TrackRow> tracks;
  std::vector<PlayRow> plays;
  /// Those of one list side by side.
  std::vector<ListRow> lists;
};

/// Older and newer versions of Mixxx lack some columns.
std::string column(const Database& database, const std::string& name) {
  auto columns =
      database.query("SELECT 1 FROM pragma_table_info('library') WHERE name = '" + name + "'");
  return columns.next() ? "l." + name : "NULL";
}

std::vector<TrackRow> readTracks(const Database& database) {
  auto rows = database.query(
      "SELECT l.id, l.artist, l.title, l.album, l.genre, l.bpm, l.key, " +
      column(database, "key_id") + ", " + column(database, "rating") + ", " +
      column(database, "year") + ", " + column(database, "datetime_added") + ", t.location\n" +
      "FROM library l JOIN track_locations t ON t.id = l.location\n"
      "WHERE COALESCE(l.mixxx_deleted, 0) = 0 AND COALESCE(t.fs_deleted, 0) = 0");
  std::vector<TrackRow> result;
  while (rows.next()) {
    auto& row = result.emplace_back();
    row.id = rows.integer(0);
    row.track.artist = rows.text(1);
    row.track.title = rows.text(2);
    row.track.album = rows.text(3);
    row.track.genre = rows.text(4);
    row.track.bpm = rows.number(5);
    row.keyText = rows.text(6);
    row.keyNumber = rows.integer(7);
    row.track.rating = static_cast<int>(std::clamp<std::int64_t>(rows.integer(8), 0, 5));
    row.year = rows.text(9);
    row.added = rows.text(10);
    row.track.file = rows.text(11);
  }
  return result;
}

std::vector<PlayRow> readPlays(const Database& database) {
  auto rows = database.query("SELECT p.id, pt.track_id, pt.pl_datetime_added\n"
                             "FROM PlaylistTracks pt JOIN Playlists p ON pt.playlist_id = p.id\n"
                             "WHERE p.hidden = 2 ORDER BY p.id, pt.position");
  std::vector<PlayRow> result;
  while (rows.next())
    result.push_back({rows.integer(0), rows.integer(1), rows.text(2)});
  return result;
}

/// The user's crates and playlists.
std::vector<ListRow> readLists(const Database& database) {
  constexpr auto playlists = "SELECT p.name, pt.track_id FROM PlaylistTracks pt\n"
                             "JOIN Playlists p ON pt.playlist_id = p.id\n"
                             "WHERE p.hidden = 0 ORDER BY p.id";
  constexpr auto crates = "SELECT c.name, ct.track_id FROM crate_tracks ct\n"
                          "JOIN crates c ON ct.crate_id = c.id ORDER BY c.id";
  std::vector<ListRow> result;
  for (const auto* const statement : {playlists, crates}) {
    try {
      auto rows = database.query(statement);
      while (rows.next())
        result.push_back({rows.text(0), rows.integer(1)});
    } catch (const DatabaseError&) {
      // A version without them; the tracks are worth more.
    }
  }
  return result;
}

Rows readRows(const std::filesystem::path& path) {
  const auto database = Database::forReading(path, {patience, longestRead});
  Rows rows{readTracks(database), readPlays(database), readLists(database)};
  database.confirm();
  return rows;
}

std::optional<MusicalKey> keyOf(const TrackRow& row) {
  // The text has whatever notation was set when it was written; the number is always the same.
  constexpr std::int64_t notes = 12;
  if (row.keyNumber >= 1 && row.keyNumber <= 2 * notes) {
    const auto note = static_cast<int>((row.keyNumber - 1) % notes);
    return MusicalKey::onNote(note, row.keyNumber > notes);
  }
  return MusicalKey::read(row.keyText);
}

} // namespace

CrateSource MixxxCrate::read(const std::filesystem::path& path) {
  CrateSource source{.name = "Mixxx", .place = path.string()};
  Rows rows;
  try {
    rows = readRows(path);
  } catch (const DatabaseError& error) {
    source.skipped.push_back({path.string(), error.what()});
    return source;
  }
  std::unordered_map<std::int64_t, std::uint64_t> identities;
  source.tracks.reserve(rows.tracks.size());
  for (auto& row : rows.tracks) {
    auto& track = source.tracks.emplace_back(std::move(row.track));
    track.key = keyOf(row);
    track.year = CrateDates::year(row.year);
    track.added = CrateDates::universalTime(row.added);
    TrackIdentity::complete(track);
    identities.emplace(row.id, track.identity);
  }
  std::int64_t night = 0;
  for (const auto& play : rows.plays) {
    const auto known = identities.find(play.track);
    if (known == identities.end()) continue;
    if (source.nights.empty() || night != play.night) source.nights.emplace_back();
    night = play.night;
    source.nights.back().push_back({known->second, CrateDates::universalTime(play.when)});
  }
  for (const auto& [name, track] : rows.lists) {
    const auto known = identities.find(track);
    if (known == identities.end()) continue;
    if (source.lists.empty() || source.lists.back().name != name)
      source.lists.push_back({name, {}});
    source.lists.back().tracks.push_back(known->second);
  }
  return source;
}

} // namespace velmor
