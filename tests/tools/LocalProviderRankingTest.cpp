#include "Catalogue.h"
#include "Ranking.h"
#include "RequestRecord.h"

#include <gtest/gtest.h>

#include <set>

namespace velmor::tests {
namespace {

using namespace velmor::tools;

const std::vector<Song>& bundled() {
  static const auto songs = Catalogue::load(LOCAL_PROVIDER_CATALOGUE);
  return songs;
}

const PromptFacts house{"Night Drive", "Nobody", "", 126, "8A", "House", 80, "", "mpv", 10, 10};

std::vector<std::string> titles(const PromptFacts& facts) {
  std::vector<std::string> result;
  for (const auto& ranked : Ranking::of(facts, bundled()))
    result.push_back(ranked.song.song);
  return result;
}

Song song(double bpm, const char* key, const char* genre, int energy) {
  static int number = 0;
  const auto name = std::to_string(++number);
  return {name, "Artist " + name, "", bpm, key, genre, energy};
}

TEST(Ranking, followsTempoKeyGenreAndEnergyOneByOne) {
  const auto sameRest = std::string(", the same key 8A, the same genre House and ");
  const auto alike = "an energy much the same.";
  struct Case {
    std::string explanation;
    Song best, worse;
  };
  for (const auto& [explanation, best, worse] : {
           Case{"2 BPM faster" + sameRest + alike, song(128, "8A", "House", 83),
                song(136, "8A", "House", 83)},
           Case{"1 BPM slower in half time" + sameRest + alike, song(250, "8A", "House", 83),
                song(142, "8A", "House", 83)},
           Case{"The same tempo" + sameRest + "less energy.", song(126, "8A", "House", 70),
                song(126, "8A", "House", 50)},
           Case{"The same tempo, key 9A one step above 8A, the same genre House and more energy.",
                song(126, "9A", "House", 90), song(126, "10A", "House", 90)},
           Case{"The same tempo, the same key 8A, the related genre Tech House and " +
                    std::string(alike),
                song(126, "8A", "Tech House", 80), song(126, "8A", "Rock", 80)},
       }) {
    const auto ranking = Ranking::of(house, {worse, best});
    ASSERT_EQ(ranking.size(), 2U);
    EXPECT_EQ(ranking[0].explanation, explanation);
    EXPECT_GT(ranking[0].score, ranking[1].score) << explanation;
  }
}

TEST(Ranking, fallsFromRankToRankAndNamesNoArtistTwice) {
  const auto ranking = Ranking::of(house, bundled());
  ASSERT_EQ(ranking.size(), 10U);
  int last = 100;
  std::set<std::string> artists;
  for (const auto& ranked : ranking) {
    EXPECT_LE(ranked.score, last);
    EXPECT_GT(ranked.score, 50);
    EXPECT_TRUE(artists.insert(ranked.song.artist).second) << ranked.song.artist;
    last = ranked.score;
  }
}

TEST(Ranking, neverOffersTheCurrentSong) {
  auto facts = house;
  facts.count = static_cast<int>(bundled().size());
  for (const char* title : {"  blue MONDAY\u00a0", "Blue Monday (12\" Mix)",
                            "Blue Monday - Remastered", "ＢＬＵＥ Monday"}) {
    facts.song = title;
    for (const auto& offered : titles(facts))
      EXPECT_NE(offered, "Blue Monday") << title;
  }
}

TEST(RequestRecord, keepsKeysToItself) {
  const ReceivedRequest request{"POST",
                                "/v1/responses",
                                {{"authorization", "Bearer secret"},
                                 {"x-api-key", "other"},
                                 {"x-api-key", ""},
                                 {"accept", "*/*"}},
                                "{\"a\":1}"};
  EXPECT_EQ(RequestRecord::line(request, "secret"),
            R"({"body":{"a":1},"headers":{"accept":"*/*","authorization":"expected key",)"
            R"("x-api-key":["other key","malformed"]},"path":"/v1/responses"})");
}

} // namespace
} // namespace velmor::tests
