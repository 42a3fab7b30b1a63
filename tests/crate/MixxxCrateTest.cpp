#include "crate/sources/MixxxCrate.h"

#include "tests/crate/CrateBuilder.h"
#include "tests/support/DatabaseFile.h"

#include <gtest/gtest.h>

using namespace velmor;

namespace {

constexpr auto schema = R"(
CREATE TABLE library(id INTEGER PRIMARY KEY, artist, title, album, genre, bpm FLOAT, key,
  key_id INTEGER, rating INTEGER, year, location INTEGER, mixxx_deleted, datetime_added);
CREATE TABLE track_locations(id INTEGER PRIMARY KEY, location, fs_deleted);
CREATE TABLE Playlists(id INTEGER PRIMARY KEY, name, hidden);
CREATE TABLE crates(id INTEGER PRIMARY KEY, name);
CREATE TABLE crate_tracks(crate_id, track_id);
INSERT INTO crates VALUES(1, 'Warm-up');
INSERT INTO crate_tracks VALUES(1, 2), (1, 3), (1, 1);
CREATE TABLE PlaylistTracks(id INTEGER PRIMARY KEY, playlist_id, track_id, position,
  pl_datetime_added);
INSERT INTO track_locations VALUES(1, '/m/ü.mp3', 0), (2, '/m/2.mp3', NULL), (3, '/m/3', 1);
INSERT INTO library VALUES
  (1, 'A', 'One', 'Al', 'House', 128.5, 'Am', 24, 5, '2019-05-01', 1, 0,
   '2026-11-23T11:39:20.665Z'),
  (2, 'B', 'Two', NULL, NULL, 0, '9A', 0, NULL, '98', 2, NULL, NULL),
  (3, 'C', 'file gone', '', '', 0, '', 0, 0, '', 3, 0, ''),
  (4, 'D', 'hidden', '', '', 0, '', 0, 0, '', 1, 1, '');
INSERT INTO Playlists VALUES(1, '2026-10-03', 2), (2, 'Best', 0), (3, '2026-10-05', 2);
INSERT INTO PlaylistTracks VALUES
  (1, 1, 2, 2, '2026-10-03 22:05:00'), (2, 1, 1, 1, '2026-10-03 22:00:00'),
  (3, 2, 1, 1, '2026-10-04 22:00:00'), (4, 3, 1, 1, '2026-10-05 22:00:00'),
  (5, 3, 3, 2, '2026-10-05 22:04:00'))";

TEST(MixxxCrate, ReadsTracksAndNights) {
  TemporaryFolder folder;
  const auto path = folder.path / "mixxxdb.sqlite";
  { const DatabaseFile library(path, schema); }
  const auto source = MixxxCrate::read(path);
  ASSERT_EQ(source.tracks.size(), 2U);
  const auto& one = source.tracks[0];
  EXPECT_EQ(std::tie(one.artist, one.title, one.album, one.genre, one.file, one.bpm, one.rating,
                     one.year, one.added),
            std::tuple("A", "One", "Al", "House", "/m/ü.mp3", 128.5, 5, 2019, 1'795'433'960));
  EXPECT_EQ(one.key->text(), "10A") << "the key's number goes before its text";
  EXPECT_EQ(source.tracks[1].key->text(), "9A");
  EXPECT_EQ(std::tuple(source.tracks[1].bpm, source.tracks[1].year), std::tuple(0, 0));
  ASSERT_EQ(source.nights.size(), 2U);
  ASSERT_EQ(source.nights[0].size(), 2U);
  EXPECT_EQ(source.nights[0][0].identity, one.identity) << "in the order of the night";
  EXPECT_EQ(source.nights[0][0].when, tonight);
  EXPECT_EQ(source.nights[1].size(), 1U);
  ASSERT_EQ(source.lists.size(), 2U);
  EXPECT_EQ(std::tuple(source.lists[0].name, source.lists[0].tracks.size()),
            std::tuple("Best", 1U));
  EXPECT_EQ(std::tuple(source.lists[1].name, source.lists[1].tracks.size()),
            std::tuple("Warm-up", 2U));
}

TEST(MixxxCrate, TakesOlderLibrariesAndNamesUnreadableOnes) {
  TemporaryFolder folder;
  const auto path = folder.path / "mixxxdb.sqlite";
  EXPECT_EQ(MixxxCrate::read(path).skipped.size(), 1U);
  DatabaseFile library(path, schema);
  library.run("ALTER TABLE library DROP COLUMN key_id; ALTER TABLE library DROP COLUMN rating");
  const auto source = MixxxCrate::read(path);
  ASSERT_EQ(source.tracks.size(), 2U);
  EXPECT_EQ(source.tracks[0].key->text(), "8A");
  library.run("DROP TABLE track_locations");
  ASSERT_EQ(MixxxCrate::read(path).skipped.size(), 1U);
  EXPECT_EQ(MixxxCrate::read(path).skipped[0].reason, "no such table: track_locations");
}

} // namespace
