#include "crate/sources/TagCache.h"

namespace velmor {

namespace {

/// Another Velmor may be storing.
constexpr std::chrono::milliseconds patience{3000};

/// The number of the table's form: a cache of another form is thrown away.
constexpr auto form = 1;

constexpr auto table = "CREATE TABLE IF NOT EXISTS tags(path TEXT PRIMARY KEY, modified INTEGER,"
                       " size INTEGER, title TEXT, artist TEXT, album TEXT, genre TEXT, bpm REAL,"
                       " key TEXT, energy INTEGER, year INTEGER) WITHOUT ROWID";

void prepare(const Database& database) {
  auto version = database.query("PRAGMA user_version");
  const bool isOwn = version.next() && version.integer(0) == form;
  if (!isOwn) database.run("DROP TABLE IF EXISTS tags");
  database.run(table);
  if (!isOwn) database.run("PRAGMA user_version = " + std::to_string(form));
}

} // namespace

TagCache::TagCache(const std::filesystem::path& file, const std::filesystem::path& folder) {
  std::error_code ignored;
  std::filesystem::create_directories(file.parent_path(), ignored);
  try {
    database = Database::forWriting(file, patience);
    prepare(*database);
    load((folder / "").string());
  } catch (const DatabaseError&) {
    database.reset();
  }
}

void TagCache::load(const std::string& folder) {
  auto rows = database->query("SELECT path, modified, size, title, artist, album, genre, bpm, key,"
                              " energy, year FROM tags WHERE substr(path, 1, length(?)) = ?");
  rows.bind(folder).bind(folder);
  while (rows.next()) {
    auto path = rows.text(0);
    Entry entry{.modified = rows.integer(1), .size = rows.integer(2)};
    entry.track = {.title = rows.text(3),
                   .artist = rows.text(4),
                   .album = rows.text(5),
                   .genre = rows.text(6),
                   .file = path};
    entry.track.bpm = rows.number(7);
    entry.track.key = MusicalKey::read(rows.text(8));
    entry.track.energy = static_cast<int>(rows.integer(9));
    entry.track.year = static_cast<int>(rows.integer(10));
    entries.emplace(std::move(path), std::move(entry));
  }
}

std::optional<CrateTrack> TagCache::find(const std::string& path, std::int64_t modified,
                                         std::int64_t size) {
  const auto found = entries.find(path);
  if (found == entries.end()) return std::nullopt;
  auto& entry = found->second;
  if (entry.modified != modified || entry.size != size) return std::nullopt;
  entry.isThere = true;
  return std::move(entry.track);
}

void TagCache::put(const CrateTrack& track, std::int64_t modified, std::int64_t size) {
  if (!database) return;
  entries[track.file] = {modified, size, track, true, true};
}

void TagCache::store(Rest rest) {
  if (!database) return;
  try {
    database->run("BEGIN IMMEDIATE");
    auto add = database->query("INSERT OR REPLACE INTO tags VALUES(?,?,?,?,?,?,?,?,?,?,?)");
    auto drop = database->query("DELETE FROM tags WHERE path = ?");
    for (const auto& [path, entry] : entries) {
      const auto& track = entry.track;
      if (!entry.isThere && rest == Rest::isGone) drop.bind(path).run();
      if (!entry.isNew) continue;
      add.bind(path).bind(entry.modified).bind(entry.size);
      add.bind(track.title).bind(track.artist).bind(track.album).bind(track.genre);
      add.bind(track.bpm).bind(track.key ? track.key->text() : "");
      add.bind(std::int64_t{track.energy}).bind(std::int64_t{track.year}).run();
    }
    database->run("COMMIT");
  } catch (const DatabaseError&) {
    // Closing the database takes back what was begun.
  }
}

} // namespace velmor
