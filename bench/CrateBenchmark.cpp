// Measures the crate and prints a table: velmor-crate-benchmark FOLDER [TRACKS [FILES]]
// The folder gets a Mixxx library and tagged files, which a second run finds there again.

#include "base/Number.h"
#include "crate/CrateReading.h"
#include "crate/ranking/CrateRanking.h"
#include "crate/sources/MixxxCrate.h"
#include "crate/sources/MusicFolder.h"
#include "crate/tracks/TrackIdentity.h"

#include <fileref.h>
#include <malloc.h>
#include <sqlite3.h>
#include <tpropertymap.h>
#include <wavfile.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>
#include <random>
#include <string>

using namespace velmor;

namespace {

namespace fs = std::filesystem;

constexpr int rounds = 5;
constexpr std::array<const char*, 8> genres{"House",       "Tech House", "Techno", "Trance",
                                            "Drum & Bass", "Hip Hop",    "Disco",  "Deep House"};

/// The median of some rounds, in milliseconds of processor time: other work on the machine changes
/// it less than the time that passes, and the disk's cache has everything.
template <typename Work>
double milliseconds(const Work& work, int times = rounds) {
  std::vector<double> all;
  for (int round = 0; round < times; ++round) {
    const auto start = std::clock();
    work();
    all.push_back(1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  std::ranges::sort(all);
  return all[all.size() / 2];
}

/// Megabytes that this process holds.
double resident() {
  std::ifstream file("/proc/self/statm");
  double pages = 0;
  file >> pages >> pages;
  return pages * 4096 / 1e6;
}

void row(const char* what, double value, const char* unit, const char* aim) {
  std::cout << "| " << what << " | " << number::formatFixed(value, value < 10 ? 2 : 0) << " "
            << unit << " | " << aim << " |" << std::endl;
}

void run(sqlite3* database, const std::string& statement) {
  char* message = nullptr;
  if (sqlite3_exec(database, statement.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return;
  std::cerr << message << '\n';
  std::exit(1);
}

/// A library as Mixxx has it, with 300 nights of 20 tracks.
void writeLibrary(const fs::path& path, int tracks) {
  if (fs::exists(path)) return;
  sqlite3* database = nullptr;
  sqlite3_open(path.c_str(), &database);
  run(database, "BEGIN; CREATE TABLE library(id INTEGER PRIMARY KEY, artist, title, album, genre,"
                " bpm FLOAT, key, key_id INTEGER, rating INTEGER, year, location INTEGER,"
                " mixxx_deleted, datetime_added); CREATE TABLE track_locations(id INTEGER PRIMARY"
                " KEY, location, fs_deleted); CREATE TABLE Playlists(id INTEGER PRIMARY KEY, name,"
                " hidden); CREATE TABLE PlaylistTracks(id INTEGER PRIMARY KEY, playlist_id,"
                " track_id, position, pl_datetime_added); CREATE TABLE crates(id, name); CREATE"
                " TABLE crate_tracks(crate_id, track_id)");
  std::mt19937 random(1); // NOLINT: the same library every time
  for (int id = 1; id <= tracks; ++id) {
    const auto number = std::to_string(id);
    const auto artist = "Artist Number " + std::to_string(random() % 9000);
    run(database, "INSERT INTO track_locations VALUES(" + number + ", '/home/dj/Music/" + artist +
                      "/An Album of the Year/" + number + " - A Title of Some Length.mp3', 0)");
    run(database, "INSERT INTO library VALUES(" + number + ", '" + artist +
                      "', 'A Title of Some Length " + number + "', 'An Album of the Year', '" +
                      genres.at(random() % genres.size()) + "', " +
                      std::to_string(90 + static_cast<double>(random() % 8500) / 100) + ", 'Am', " +
                      std::to_string(random() % 25) + ", " + std::to_string(random() % 6) + ", '" +
                      std::to_string(1985 + random() % 40) + "', " + number +
                      ", 0, '2026-01-01T10:00:00.000Z')");
  }
  for (int night = 1; night <= 300; ++night) {
    run(database, "INSERT INTO Playlists VALUES(" + std::to_string(night) + ", 'night', 2)");
    for (int play = 0; play < 20; ++play) {
      run(database, "INSERT INTO PlaylistTracks(playlist_id, track_id, position,"
                    " pl_datetime_added) VALUES(" +
                        std::to_string(night) + ", " +
                        std::to_string(1 + random() % static_cast<unsigned>(tracks)) + ", " +
                        std::to_string(play) + ", '2026-02-03 22:00:00')");
    }
  }
  run(database, "COMMIT");
  sqlite3_close(database);
}

/// Short tagged files, a hundred in a folder.
std::vector<fs::path> writeFiles(const fs::path& folder, int count) {
  using namespace std::string_literals;
  const auto silence = "RIFF\x24\x20\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1F\0\0\x40\x1F\0\0\1\0\x08"
                       "\0data\0\x20\0\0"s +
                       std::string(8192, '\x80');
  std::vector<fs::path> all;
  for (int index = 0; index < count; ++index) {
    const auto number = std::to_string(index);
    const auto path = folder / std::to_string(index / 100) / (number + ".wav");
    all.push_back(path);
    if (fs::exists(path)) continue;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << silence;
    TagLib::RIFF::WAV::File file(path.c_str());
    TagLib::PropertyMap tags;
    tags["TITLE"] = TagLib::String("A Title of Some Length " + number);
    tags["ARTIST"] = TagLib::String("Artist Number " + std::to_string(index % 900));
    tags["ALBUM"] = TagLib::String("An Album of the Year");
    tags["GENRE"] = TagLib::String("House");
    tags["BPM"] = TagLib::String("128");
    tags["INITIALKEY"] = TagLib::String("8A");
    file.setProperties(tags);
    file.save();
  }
  return all;
}

void measureLibrary(const fs::path& library) {
  ReadingProgress progress;
  CratePlaces places{.mixxxLibraries = {library}};
  malloc_trim(0);
  const double before = resident();
  CrateReading reading;
  const double first =
      milliseconds([&] { reading = CrateReading::after({}, places, progress); }, 1);
  row("100,000 tracks of Mixxx, first read", first, "ms", "2,000 ms");
  row("the same, nothing changed",
      milliseconds([&] { reading = CrateReading::after(reading, places, progress); }), "ms", "");
  row("memory that stays, at most", resident() - before, "MB", "60 MB");
  malloc_trim(0);
  row("memory of the tracks alone", resident() - before, "MB", "");
  CrateWish wish{.current = *reading.contents->tracks[500], .bpmTolerance = 10, .count = 10};
  wish.now = 1'800'000'000;
  row("ranking them", milliseconds([&] { (void)rankCrate(*reading.contents, wish); }), "ms",
      "30 ms");
}

void measureFiles(const fs::path& folder, const std::vector<fs::path>& files) {
  const auto cache = folder / "tags.sqlite";
  const auto music = folder / "music";
  ReadingProgress progress;
  const auto scan = [&] { return MusicFolder(music).read(cache, progress); };
  std::vector<double> shares;
  double own = 0;
  double bare = 0;
  for (int round = 0; round < rounds; ++round) {
    fs::remove(cache);
    own = milliseconds([&] { (void)scan(); }, 1);
    bare = milliseconds(
        [&] {
          for (const auto& path : files) {
            const TagLib::FileRef file(path.c_str(), false);
            (void)file.file()->properties();
          }
        },
        1);
    shares.push_back(100 * bare / own);
  }
  std::ranges::sort(shares);
  row("10,000 tagged files, first scan", own, "ms", "");
  row("TagLib alone", bare, "ms", "");
  row("as fast as TagLib alone", shares[shares.size() / 2], "%", "80 %");
  row("an unchanged rescan", milliseconds([&] { (void)scan(); }), "ms", "500 ms");
}

/// How often the track that was played next is among ten suggested ones, in percent. Nights of a
/// made-up DJ, who mostly takes a near tempo, often the same genre or a key that fits, and has some
/// favourite pairs; each night is judged by those before it.
void replay() {
  std::mt19937 random(5); // NOLINT: the same nights every time
  const auto chance = [&](double share) {
    return std::uniform_real_distribution<double>(0, 1)(random) < share;
  };
  CrateSource source{.name = "Made up"};
  constexpr std::size_t size = 3000;
  for (std::size_t index = 0; index < size; ++index) {
    const auto genre = random() % genres.size();
    CrateTrack track{.title = "T" + std::to_string(index),
                     .artist = "A" + std::to_string(random() % 700),
                     .genre = genres.at(genre)};
    track.bpm = std::normal_distribution<double>(100 + 9.0 * static_cast<double>(genre), 4)(random);
    if (chance(0.85)) track.key = MusicalKey{static_cast<int>(1 + random() % 12), chance(0.6)};
    track.year = static_cast<int>(1995 + random() % 30);
    TrackIdentity::complete(track);
    source.tracks.push_back(std::move(track));
  }
  const auto next = [&](std::size_t from) {
    for (;;) {
      const auto index = random() % size;
      const auto& one = source.tracks[from];
      const auto& other = source.tracks[index];
      if (index == from) continue;
      const double pitch = std::abs(one.bpm / other.bpm - 1) * 100;
      const bool keysFit =
          one.key && other.key && keyRelation(*one.key, *other.key) != KeyRelation::unrelated;
      const double wanted = (pitch < 3   ? 1
                             : pitch < 8 ? 0.3
                                         : 0.02) *
                            (one.genre == other.genre ? 1 : 0.25) * (keysFit ? 1 : 0.5);
      if (chance(wanted)) return index;
    }
  };
  std::array<int, 3> hits{};
  int asked = 0;
  std::vector<std::size_t> favourite(size, size);
  for (int night = 0; night < 60; ++night) {
    const CrateTime evening = 1'700'000'000 + night * 604'800;
    const auto contents = CrateContents::joined({std::make_shared<CrateSource>(source)});
    CrateNight plays;
    std::size_t now = random() % size;
    for (int play = 0; play < 20; ++play) {
      const CrateTime when = evening + play * 240;
      plays.push_back({source.tracks[now].identity, when});
      auto& pair = favourite[now];
      const auto then = pair < size && chance(0.5) ? pair : next(now);
      pair = then;
      const auto wished = source.tracks[then].identity;
      const CrateWish wish{
          .current = source.tracks[now], .bpmTolerance = 10, .count = 10, .now = when};
      const auto ranked = rankCrate(contents, wish);
      const auto isIt = [&](const CrateSuggestion& one) { return one.track->identity == wished; };
      hits[0] += std::ranges::any_of(ranked, isIt) ? 1 : 0;
      auto nearest = contents.tracks;
      const auto distance = [&](const CrateTrack* track) {
        return track->identity == source.tracks[now].identity
                   ? 1e9
                   : std::abs(track->bpm - source.tracks[now].bpm);
      };
      std::ranges::partial_sort(nearest, nearest.begin() + 10, {}, distance);
      hits[1] += std::any_of(nearest.begin(), nearest.begin() + 10,
                             [&](const auto* one) { return one->identity == wished; })
                     ? 1
                     : 0;
      for (int guess = 0; guess < 10; ++guess)
        hits[2] += source.tracks[random() % size].identity == wished ? 1 : 0;
      ++asked;
      now = then;
    }
    source.nights.push_back(std::move(plays));
  }
  const auto percent = [&](int hit) { return 100.0 * hit / asked; };
  row("the next track is among ten suggested", percent(hits[0]), "%", "");
  row("among the ten nearest in tempo", percent(hits[1]), "%", "");
  row("among ten at random", percent(hits[2]), "%", "");
}

} // namespace

int main(int count, char** arguments) {
  const fs::path folder = count > 1 ? arguments[1] : "crate-benchmark";
  fs::create_directories(folder);
  writeLibrary(folder / "mixxxdb.sqlite", count > 2 ? std::atoi(arguments[2]) : 100'000);
  const auto files = writeFiles(folder / "music", count > 3 ? std::atoi(arguments[3]) : 10'000);
  std::cout << "| What | Measured | Aim |\n| --- | --- | --- |\n";
  measureLibrary(folder / "mixxxdb.sqlite");
  measureFiles(folder, files);
  replay();
}
