#include "crate/sources/MusicFolder.h"

#include "tests/crate/CrateBuilder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <tpropertymap.h>
#include <wavfile.h>

#include <filesystem>
#include <fstream>
#include <map>

using namespace velmor;

namespace {

using Tags = std::map<std::string, std::string>;

/// A second of nothing with these tags.
void writeWav(const std::filesystem::path& path, const Tags& tags) {
  using namespace std::string_literals;
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary)
      << "RIFF\x2C\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1F\0\0\x40\x1F\0\0\1\0\x08\0data\x08\0\0\0"s
      << "\x80\x80\x80\x80\x80\x80\x80\x80";
  TagLib::RIFF::WAV::File file(path.c_str());
  TagLib::PropertyMap properties;
  for (const auto& [name, value] : tags)
    properties[name] = TagLib::StringList(TagLib::String(value, TagLib::String::UTF8));
  file.setProperties(properties);
  ASSERT_TRUE(file.save());
}

CrateSource read(const std::filesystem::path& folder, const std::filesystem::path& cache) {
  ReadingProgress progress;
  return MusicFolder(folder).read(cache, progress);
}

TEST(MusicFolder, ReadsTagsOnceAndAgainWhenTheyChange) {
  TemporaryFolder place;
  const auto music = place.path / "Müsic";
  const auto cache = place.path / "cache/tags.sqlite";
  const auto one = music / "deep/down/1.wav";
  writeWav(one, {{"TITLE", "Ünö"},
                 {"ARTIST", "A"},
                 {"GENRE", "House"},
                 {"DATE", "2019-05-01"},
                 {"BPM", "128,5"},
                 {"INITIALKEY", "8A - Energy 7"}});
  writeWav(music / "B - Two.WAV", {});
  writeWav(music / ".hidden/3.wav", {{"TITLE", "T"}, {"ARTIST", "A"}});
  std::ofstream(music / "junk.flac") << "junk";
  std::ofstream(music / "text.txt") << "no music";

  const auto first = read(music, cache);
  ASSERT_EQ(first.skipped.size(), 1U);
  EXPECT_EQ(first.skipped[0].file, (music / "junk.flac").string());
  ASSERT_EQ(first.tracks.size(), 2U);
  EXPECT_EQ(first.tracks[0].identity, track("B", "Two").identity) << "named by its file";
  for (const auto& source : {first, read(music, cache)}) {
    ASSERT_EQ(source.tracks.size(), 2U);
    const auto& read = source.tracks[1];
    EXPECT_EQ(std::tie(read.title, read.artist, read.genre, read.year, read.bpm, read.file),
              std::tuple("Ünö", "A", "House", 2019, 128.5, one.string()));
    EXPECT_EQ(read.key->text(), "8A");
    EXPECT_EQ(read.identity, track("a", "uno").identity);
  }

  const auto before = MusicFolder(music).state();
  EXPECT_EQ(MusicFolder(music).state(), before);
  writeWav(one, {{"TITLE", "Another title"}, {"ARTIST", "A"}});
  EXPECT_NE(MusicFolder(music).state(), before);
  EXPECT_EQ(read(music, cache).tracks[1].title, "Another title");
  std::filesystem::remove(one);
  EXPECT_EQ(read(music, cache).tracks.size(), 1U);
  EXPECT_EQ(read(music, "/dev/null/no/cache").tracks.size(), 1U);
  EXPECT_TRUE(read(place.path / "none", cache).tracks.empty());
}

TEST(MusicFolder, TakesUnchangedFilesFromTheCache) {
  TemporaryFolder place;
  const auto file = place.path / "1.wav";
  const auto cache = place.path / "tags.sqlite";
  writeWav(file, {{"TITLE", "First"}, {"ARTIST", "A"}});
  const auto time = std::filesystem::last_write_time(file);
  EXPECT_EQ(read(place.path, cache).tracks.at(0).title, "First");
  writeWav(file, {{"TITLE", "Other"}, {"ARTIST", "A"}});
  std::filesystem::last_write_time(file, time);
  EXPECT_EQ(read(place.path, cache).tracks.at(0).title, "First")
      << "time and size are the same, so the file was not opened";
  std::ofstream(cache) << "no database";
  EXPECT_EQ(read(place.path, cache).tracks.at(0).title, "Other");
}

} // namespace
