#include "crate/ranking/CrateAnswer.h"
#include "crate/ranking/CrateRanking.h"
#include "crate/ranking/CrateReasons.h"
#include "tests/crate/CrateBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace velmor;

namespace {

const CrateTrack current = track("Now", "Playing", 128, "8A", "House", 2020);

CrateWish wish(double tolerance = 10, std::size_t count = 10) {
  return {.current = current, .bpmTolerance = tolerance, .count = count, .now = tonight};
}

/// "Title, Title", the best first.
std::string order(const CrateContents& crate, const CrateWish& wanted) {
  std::string titles;
  for (const auto& suggestion : rankCrate(crate, wanted))
    titles += (titles.empty() ? "" : ", ") + suggestion.track->title;
  return titles;
}

TEST(CrateRanking, PrefersWhatADjWould) {
  const auto energetic = [](CrateTrack made, int energy) {
    made.energy = energy;
    return made;
  };
  const auto rated = [](CrateTrack made, int stars) {
    made.rating = stars;
    return made;
  };
  const struct {
    const char* why;
    CrateTrack better;
    CrateTrack worse;
  } cases[] = {
      {"a near tempo goes before a far one", track("A", "x", 126), track("B", "y", 121)},
      {"half time goes before 8 % of pitch", track("A", "x", 64), track("B", "y", 118.5)},
      {"the same tempo goes before half time", track("A", "x", 128), track("B", "y", 64)},
      {"a step on the wheel goes before a diagonal", track("A", "x", 128, "9A"),
       track("B", "y", 128, "9B")},
      {"the relative key goes before two steps", track("A", "x", 128, "8B"),
       track("B", "y", 128, "10A")},
      {"an unknown key goes before a clash", track("A", "x", 128), track("B", "y", 128, "2B")},
      {"a matching key goes before an unknown one", track("A", "x", 128, "7A"),
       track("B", "y", 128)},
      {"an unknown tempo goes before a bad one", track("A", "x"), track("B", "y", 137.5)},
      {"a good tempo goes before an unknown one", track("A", "x", 127), track("B", "y")},
      {"a related genre goes before a strange one", track("A", "x", 128, "", "Disco"),
       track("B", "y", 128, "", "Drum & Bass")},
      {"shared words go before related ones", track("A", "x", 128, "", "Deep House"),
       track("B", "y", 128, "", "Disco")},
      {"other spellings are the same genre", track("A", "x", 128, "", "HOUSE"),
       track("B", "y", 128, "", "Tech House")},
      {"the same years go before long ago", track("A", "x", 128, "", "", 2018),
       track("B", "y", 128, "", "", 1990)},
      {"stars break what is equal otherwise", rated(track("A", "x", 128), 5),
       rated(track("B", "y", 128), 2)},
      {"another artist goes before the same again", track("A", "x", 128), track("Now", "y", 128)},
      {"a small lift goes before a fall", energetic(track("A", "x", 128), 7),
       energetic(track("B", "y", 128), 5)},
      {"a fall goes before a leap", energetic(track("A", "x", 128), 5),
       energetic(track("B", "y", 128), 10)},
  };
  auto wanted = wish();
  wanted.current.energy = 6;
  for (const auto& [why, better, worse] : cases)
    EXPECT_EQ(order(crateOf({worse, better}), wanted), better.title + ", " + worse.title) << why;
}

TEST(CrateRanking, LearnsFromTheDjsNights) {
  constexpr CrateTime day = 86400;
  const auto one = track("A", "one", 128, "8A", "House");
  const auto two = track("B", "two", 124, "9A", "House");
  const auto three = track("C", "three", 128, "8A", "House");
  const std::vector tracks{current, one, two, three};
  EXPECT_TRUE(order(crateOf(tracks), wish()).ends_with("two"));
  const CrateNight pair{played(current, tonight - 40 * day), played(two, tonight - 40 * day + 300)};
  EXPECT_TRUE(order(crateOf(tracks, {pair}), wish()).starts_with("two"));
  const CrateNight earlier{played(one, tonight - 3 * 3600)};
  EXPECT_EQ(order(crateOf(tracks, {pair, earlier}), wish()), "two, three, one");
  const CrateNight apart{played(current, 1), played(three, 2), played(two, 3)};
  EXPECT_TRUE(order(crateOf(tracks, {apart}), wish()).starts_with("three"));
}

TEST(CrateRanking, KeepsItsLimitsAndSaysWhatItGaveUp) {
  const auto reasons = [](const CrateContents& crate, const CrateWish& wanted) {
    std::vector<std::string> lines;
    for (const auto& suggestion : rankCrate(crate, wanted))
      lines.push_back(suggestion.track->title + ": " + reasonFor(suggestion, wanted));
    return lines;
  };
  EXPECT_TRUE(rankCrate(crateOf({}), wish()).empty());
  EXPECT_TRUE(rankCrate(crateOf({track("Now", "Playing (Extended Mix)", 128)}), wish()).empty());
  const auto versions =
      crateOf({track("A", "x (Extended Mix)", 128), track("A", "x (Radio Edit)", 128)});
  EXPECT_EQ(rankCrate(versions, wish()).size(), 1U);

  const auto ofOne = crateOf({track("A", "1", 128), track("A", "2", 127), track("A", "3", 126),
                              track("B", "4", 119), track("C", "5", 150)});
  EXPECT_EQ(order(ofOne, wish(10, 2)), "1, 4") << "one of an artist while there are others";
  EXPECT_EQ(order(ofOne, wish(10, 3)), "1, 2, 4");
  EXPECT_EQ(order(ofOne, wish(1, 3)), "1, 2, 4") << "two of an artist, then out of tolerance";
  const auto all = reasons(ofOne, wish(10));
  ASSERT_EQ(all.size(), 5U);
  EXPECT_EQ(all[3].substr(0, 31), "5: Outside your BPM tolerance, ");
  EXPECT_EQ(all[4].substr(0, 36), "3: One more of this artist for want ");
  EXPECT_EQ(order(ofOne, wish(30)), "1, 2, 4, 5, 3");
  EXPECT_EQ(order(crateOf({track("A", "half", 64), track("B", "near", 65)}), wish(1)),
            "half, near");
}

TEST(CrateRanking, HeedsTheDjsListsAndWhetherKeysCount) {
  const auto near = track("A", "near", 128, "9A", "House");
  const auto mate = track("B", "mate", 128, "9A", "House");
  const auto clash = track("C", "clash", 128, "2B", "House");
  const auto made = source({.name = "Test",
                            .tracks = {current, near, mate, clash},
                            .lists = {{"Warm-up", {current.identity, mate.identity}},
                                      {"Others", {near.identity, clash.identity}}}});
  const auto crate = CrateContents::joined({made});
  EXPECT_EQ(order(crate, wish()), "mate, near, clash");
  EXPECT_NE(reasonFor(rankCrate(crate, wish()).at(0), wish()).find("in “Warm-up” like this one"),
            std::string::npos);
  auto withoutKeys = wish();
  withoutKeys.keys = false;
  const auto ranked = rankCrate(crate, withoutKeys);
  EXPECT_EQ(ranked.at(1).points.total, ranked.at(2).points.total);
  EXPECT_EQ(reasonFor(ranked.at(1), withoutKeys), "Same tempo, house like this one.");
}

TEST(CrateRanking, ExplainsWithFacts) {
  const auto next = track("A", "x", 126, "9A", "House");
  const CrateNight pair{played(current, tonight - 86400), played(next, tonight - 86000)};
  const auto reason = [](const CrateContents& crate) {
    return reasonFor(rankCrate(crate, wish()).at(0), wish());
  };
  setenv("TZ", "UTC", 1);
  tzset();
  EXPECT_EQ(reason(crateOf({current, next}, {pair})),
            "+1.6 % to match, 8A → 9A one step up, house like this one, you played it after this "
            "track on 2 October.");
  EXPECT_EQ(reason(crateOf({track("A", "x", 136, "8A", "Disco")})),
            "−5.9 % to match, 8A → 8A the same key (1A without key lock), disco, near house.");
  EXPECT_EQ(reason(crateOf({track("A", "x")})), "Its tempo is not known, its key is not known.");
  EXPECT_EQ(reason(crateOf({track("A", "x", 64, "12B", "Ska")})),
            "Same tempo in double time, 8A → 12B the keys don't match, ska.");
}

TEST(CrateRanking, NeverRanksANearerTempoLowerNorMindsTheOrderOfTheFile) {
  std::mt19937 random(7); // NOLINT: the same crate every time
  std::uniform_real_distribution<double> tempo(100, 160);
  const std::vector<const char*> keys{"", "8A", "9A", "3B"};
  std::vector<CrateTrack> tracks;
  for (int index = 0; index < 400; ++index) {
    const auto number = std::to_string(index);
    tracks.push_back(track("Artist " + number, "Title " + number, tempo(random),
                           keys[static_cast<std::size_t>(index) % keys.size()]));
  }
  const auto crate = crateOf(tracks);
  const auto ranked = rankCrate(crate, wish(30, 400));
  const auto pitch = [](const CrateSuggestion& one) { return std::abs(one.points.tempo->pitch); };
  for (std::size_t one = 0; one < ranked.size(); ++one) {
    for (std::size_t other = one + 1; other < ranked.size(); ++other) {
      if (ranked[one].track->key == ranked[other].track->key &&
          ranked[one].isOutOfTolerance == ranked[other].isOutOfTolerance) {
        EXPECT_LE(pitch(ranked[one]), pitch(ranked[other]));
      }
    }
    EXPECT_GE(ranked[one].points.total, 0);
    EXPECT_LE(ranked[one].points.total, 100);
  }
  const auto titles = order(crateOf(tracks), wish(10, 10));
  std::ranges::shuffle(tracks, random);
  EXPECT_EQ(order(crateOf(tracks), wish(10, 10)), titles);
}

} // namespace
