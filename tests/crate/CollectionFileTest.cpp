#include "crate/sources/CollectionFile.h"

#include "tests/crate/CrateBuilder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using namespace velmor;
using testing::ElementsAre;

namespace {

using namespace std::string_literals;

constexpr auto rekordbox = R"(<?xml version="1.0" encoding="UTF-8"?>
<DJ_PLAYLISTS Version="1.0.0"><PRODUCT Name="rekordbox"/><COLLECTION Entries="2">
<TRACK TrackID="1" Name="R&amp;B &lt;3" Artist="A" Album="L" Genre="House" AverageBpm="128.50"
 Tonality="Fm" Rating="255" Year="2019" DateAdded="2020-01-01"
 Location="file://localhost/C:/Music/Demo%20Tracks/1.mp3"><TEMPO Inizio="0.02" Bpm="90.00"/></TRACK>
<TRACK TrackID="2" Name="Two" Artist="B" AverageBpm="0.00" Tonality="" Rating="0" Year="0"
 Location="file://localhost/Users/dj/%C3%BC.mp3"/>
</COLLECTION><PLAYLISTS><NODE Name="ROOT"><TRACK Key="1"/></NODE></PLAYLISTS></DJ_PLAYLISTS>)";

constexpr auto traktor = R"(<NML VERSION="19"><HEAD/><COLLECTION ENTRIES="2">
<ENTRY TITLE="R&amp;B &lt;3" ARTIST="A"><LOCATION DIR="/:Music/:Demo Tracks/:" FILE="1.mp3" VOLUME="C:"/>
<ALBUM TITLE="L"/><INFO GENRE="House" KEY="1d" RELEASE_DATE="2019/1/1"/><TEMPO BPM="128.5"/>
<MUSICAL_KEY VALUE="17"/></ENTRY>
<ENTRY TITLE="Two" ARTIST="B"><LOCATION DIR="/:Users/:dj/:" FILE="ü.mp3" VOLUME="Macintosh HD"/></ENTRY>
</COLLECTION><PLAYLISTS><NODE><ENTRY><PRIMARYKEY KEY="x"/></ENTRY></NODE></PLAYLISTS></NML>)";

constexpr auto virtualDj = R"(<VirtualDJ_Database Version="2023">
<Song FilePath="C:/Music/Demo Tracks/1.mp3"><Tags Author="A" Title="R&amp;B &lt;3" Album="L" Genre="House"
 Year="2019" Bpm="0.466926" Key="Fm"/><Infos/><Scan Bpm="0.4" Key="Am"/></Song>
<Song FilePath="/stem.mp3"><Scan Bpm="0.5"/></Song>
<Song FilePath="/Users/dj/ü.mp3"><Tags Author="B" Title="Two"/></Song></VirtualDJ_Database>)";

std::string record(const std::string& name, const std::string& value) {
  const auto length = value.size();
  return name + '\0' + '\0' + static_cast<char>(length / 256) + static_cast<char>(length % 256) +
         value;
}

/// As UTF-16; for letters up to U+00FF.
std::string wide(std::u32string_view text) {
  std::string bytes;
  for (const auto letter : text)
    bytes += '\0' + std::string(1, static_cast<char>(letter));
  return bytes;
}

std::string serato() {
  const auto first = record("pfil", wide(U"Music/1.mp3")) + record("tart", wide(U"A")) +
                     record("tsng", wide(U"R&B <3")) + record("talb", wide(U"L")) +
                     record("tgen", wide(U"House")) + record("ttyr", wide(U"2019")) +
                     record("tbpm", wide(U"128.50")) + record("tkey", wide(U"Fm"));
  return record("vrsn", wide(U"2.0")) + record("otrk", first) +
         record("otrk", record("tsng", wide(U"gone")) + record("bmis", "\1")) +
         record("otrk", record("pfil", wide(U"Users/dj/ü.mp3")) + record("tart", wide(U"B")) +
                            record("tsng", wide(U"Two")));
}

class Collections : public testing::Test {
protected:
  CrateSource read(const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
    return CollectionFile::read(path, progress);
  }

  TemporaryFolder folder;
  std::filesystem::path path = folder.path / "collection";
  ReadingProgress progress;
};

TEST_F(Collections, AreReadInEveryForm) {
  const std::tuple<const char*, std::string, const char*> files[] = {
      {"rekordbox", rekordbox, "C:/Music/Demo Tracks/1.mp3"},
      {"Traktor", traktor, "C:/Music/Demo Tracks/1.mp3"},
      {"VirtualDJ", virtualDj, "C:/Music/Demo Tracks/1.mp3"},
      {"Serato", serato(), "/Music/1.mp3"}};
  for (const auto& [name, content, file] : files) {
    SCOPED_TRACE(name);
    const auto source = read(content);
    EXPECT_EQ(source.name, name);
    EXPECT_TRUE(source.skipped.empty());
    ASSERT_EQ(source.tracks.size(), 2U);
    const auto& one = source.tracks[0];
    EXPECT_EQ(std::tie(one.title, one.artist, one.album, one.genre, one.file, one.year),
              std::tuple("R&B <3", "A", "L", "House", file, 2019));
    EXPECT_NEAR(one.bpm, 128.5, 0.001);
    EXPECT_EQ(one.key->text(), "4A");
    EXPECT_EQ(one.identity, track("a", "R&B <3").identity);
    const auto& two = source.tracks[1];
    EXPECT_EQ(std::tie(two.title, two.bpm, two.file), std::tuple("Two", 0, "/Users/dj/ü.mp3"));
    EXPECT_FALSE(two.key);
    EXPECT_NEAR(progress.value(), 1, 0.01);

    // Half of it, as while it is written, gives the track that is whole.
    const auto half = read(content.substr(
        0, content.find("Two") == std::string::npos ? content.size() - 8 : content.find("Two")));
    EXPECT_GE(half.tracks.size(), 1U);
    EXPECT_EQ(half.tracks.at(0).title, "R&B <3");
    EXPECT_EQ(half.skipped.size(), 1U);
  }
}

TEST_F(Collections, NameWhatTheyCannotRead) {
  for (const auto& content : {""s, "no XML"s, "<html/>"s, "vrsn\xFF\xFF\xFF\xFF"s,
                              "<!DOCTYPE NML [<!ENTITY a \"x\"><!ENTITY b \"&a;&a;\">]><NML"s}) {
    const auto source = read(content);
    EXPECT_TRUE(source.tracks.empty());
    EXPECT_EQ(source.skipped.size(), 1U) << content;
  }
  EXPECT_EQ(CollectionFile::read(folder.path, progress).skipped.size(), 1U);
  EXPECT_EQ(CollectionFile::read("/none", progress).skipped.size(), 1U);
}

} // namespace
