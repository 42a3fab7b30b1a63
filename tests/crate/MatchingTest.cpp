#include "crate/ranking/CrateAnswer.h"
#include "tests/crate/CrateBuilder.h"

#include <gtest/gtest.h>

using namespace velmor;

namespace {

struct Names {
  const char* artist;
  const char* title;
  const char* otherArtist;
  const char* otherTitle;
};

TEST(Matching, KnowsTheSameRecordingInAnySpelling) {
  const Names same[] = {
      {"Robin S", "Show Me Love", "robin s.", "SHOW ME LOVE"},
      {"Sigur Rós", "Svefn-g-englar", "Sigur Ros", "Svefn G Englar"},
      {"Beyoncé", "Déjà Vu", "Beyonce", "Deja Vu"},
      {"Beyonce\u0301", "Halo", "Beyoncé", "Halo"},
      {"Mø", "Kamikaze", "MO", "Kamikaze"},
      {"Röyksopp", "Eple", "ROYKSOPP", "eple"},
      {"Daft Punk", "One More Time", "Daft Punk", "One More Time (Original Mix)"},
      {"Daft Punk", "One More Time", "Daft Punk", "One More Time [Original Mix]"},
      {"Daft Punk", "One More Time", "Daft Punk", "One More Time - Original Mix"},
      {"Calvin Harris feat. Rihanna", "We Found Love", "Calvin Harris", "We Found Love"},
      {"Calvin Harris ft. Rihanna", "We Found Love", "Calvin Harris", "We Found Love"},
      {"Calvin Harris", "We Found Love (feat. Rihanna)", "Calvin Harris", "We Found Love"},
      {"Calvin Harris", "We Found Love ft Rihanna", "Calvin Harris", "We Found Love"},
      {"A", "Up (feat. B) (C Remix)", "A", "Up (C Remix)"},
      {"A", "Up (with B)", "A", "Up"},
      {"A & B", "Tune", "B, A", "Tune"},
      {"A and B", "Tune", "A & B", "Tune"},
      {"A x B", "Tune", "A vs. B", "Tune"},
      {"The Chemical Brothers", "Galvanize", "Chemical Brothers, The", "Galvanize"},
      {"Guns N' Roses", "Don't Cry", "Guns N Roses", "Dont Cry"},
      {"Guns N’ Roses", "Don’t Cry", "Guns N' Roses", "Don't Cry"},
      {"DJ A", "X (Y Remix)", "dj a", "X [Y Remix]"},
      {"DJ A", "X (Y Remix)", "DJ A", "X - Y Remix"},
      {"  DJ A ", "X\t", "DJ A", "X"},
      {"", "Artist - Title", "Artist", "Title"},
  };
  const Names different[] = {
      {"Daft Punk", "One More Time", "Daft Punk", "One More Time (Someone Remix)"},
      {"A", "X (Y Remix)", "A", "X (Z Remix)"},
      {"A", "X", "B", "X"},
      {"A", "X", "A", "X (Live)"},
      {"A", "X (Dub)", "A", "X"},
      {"A", "Part 1", "A", "Part 2"},
      {"A", "Original", "A", "Another"},
      {"東京", "夜", "東京", "朝"},
      {"A", "???", "A", "!!!"},
      {"A", "With You", "A", "Without"},
  };
  for (const auto& [artist, title, otherArtist, otherTitle] : same) {
    EXPECT_EQ(track(artist, title).identity, track(otherArtist, otherTitle).identity)
        << artist << " - " << title << " / " << otherArtist << " - " << otherTitle;
  }
  for (const auto& [artist, title, otherArtist, otherTitle] : different) {
    EXPECT_NE(track(artist, title).identity, track(otherArtist, otherTitle).identity)
        << artist << " - " << title << " / " << otherArtist << " - " << otherTitle;
  }
  EXPECT_EQ(track("A", "X (Extended Mix)").song, track("A", "X (Radio Edit)").song);
  EXPECT_NE(track("A", "X (Extended Mix)").identity, track("A", "X (Radio Edit)").identity);
  EXPECT_NE(track("A", "X (B Remix)").song, track("A", "X").song);
}

TEST(Matching, ReadsKeysAsDjToolsWriteThem) {
  const std::pair<const char*, const char*> keys[] = {
      {"Am", "8A"},      {"A minor", "8A"},  {"Amin", "8A"},    {"a-moll", "8A"},
      {"08A", "8A"},     {"8a", "8A"},       {"1m", "8A"},      {"1d", "8B"},
      {"10d", "5B"},     {"8A - 7", "8A"},   {"8A/9A", "8A"},   {"8A - Energy 7", "8A"},
      {"A#m +50", "3A"}, {"F♯/G♭", "2B"},    {"F#/Gbm", "11A"}, {"F♯m", "11A"},
      {"C", "8B"},       {"Cmaj", "8B"},     {"C major", "8B"}, {"Bb", "6B"},
      {"EbM", "5B"},     {"B♭ minor", "3A"}, {"Abm", "1A"},     {"o", "none"},
      {"13A", "none"},   {"0A", "none"},     {"H", "none"},     {"All", "none"},
      {"", "none"},      {"8", "none"},      {"Dance", "none"}, {" G dur ", "9B"},
  };
  for (const auto& [written, read] : keys) {
    const auto key = MusicalKey::read(written);
    EXPECT_EQ(key ? key->text() : "none", read) << written;
  }
}

TEST(Matching, JoinsWhatTheSourcesKnow) {
  auto known = track("A", "One", 0, "8A");
  known.year = 1999;
  auto other = track("a", "One (Original Mix)", 128, "9A", "House");
  const auto crate = CrateContents::joined(
      {source({.name = "First", .tracks = {track("B", "Two"), known, track("", "nameless")}}),
       source({.name = "Second", .tracks = {other}, .nights = {{{other.identity, 5}, {7, 6}}}})});
  ASSERT_EQ(crate.tracks.size(), 2U);
  EXPECT_EQ(crate.status(), "Your crate: 2 tracks");
  ASSERT_EQ(crate.skipped.size(), 1U);
  EXPECT_EQ(crate.skipped[0].file, "/nameless");
  const auto* const one = CrateAnswer::named("A - One", crate);
  ASSERT_TRUE(one);
  EXPECT_EQ(one->key->text(), "8A") << "the first source goes before the second";
  EXPECT_EQ(std::tuple(one->bpm, one->genre, one->year, one->lastPlayed),
            std::tuple(128.0, "House", 1999, 5));
  EXPECT_EQ(CrateAnswer::named("C - One", crate), nullptr);
  EXPECT_EQ(CrateContents().status(), "No music found for your crate");
  const auto dashes = crateOf({track("A - B", "C - D")});
  EXPECT_TRUE(CrateAnswer::named("A – B – C – D", dashes) ||
              CrateAnswer::named("A - B - C - D", dashes));
}

} // namespace
