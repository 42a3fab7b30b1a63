#include "Catalogue.h"
#include "Ranking.h"
#include "RequestRecord.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace velmor::tests {
namespace {

using namespace velmor::tools;

const std::vector<Song>& bundled() {
  static const auto songs = Catalogue::load(LOCAL_PROVIDER_CATALOGUE);
  return songs;
}

const PromptFacts house{"Night Drive", "Nobody", "", 126, "8A", "House", 80, "", "mpv", 10, 10};

std::vector<std::string> titles(const PromptFacts& facts, const std::vector<Song>& songs) {
  std::vector<std::string> result;
  for (const auto& ranked : Ranking::of(facts, songs))
    result.push_back(ranked.song.song);
  return result;
}

Song song(const char* title, double bpm, const char* key, const char* genre, int energy) {
  return {title, std::string("Artist of ") + title, "", bpm, key, genre, energy};
}

TEST(Catalogue, isLargeAndReachesEveryKeyAndTempo) {
  EXPECT_GE(bundled().size(), 300U);
  std::set<std::string> keys;
  std::map<int, int> tempos;
  for (const auto& entry : bundled()) {
    keys.insert(entry.key);
    ++tempos[static_cast<int>(entry.bpm) / 10];
  }
  EXPECT_EQ(keys.size(), 24U);
  for (int region = 7; region < 18; ++region)
    EXPECT_GE(tempos[region], 4) << region * 10;
}

TEST(Ranking, followsTempoKeyGenreAndEnergyOneByOne) {
  struct Case {
    const char* explanation;
    Song best, worse;
  };
  for (const auto& [explanation, best, worse] : {
           Case{"2 BPM faster, the same key 8A, the same genre House and an energy much the same.",
                song("near", 128, "8A", "House", 83), song("far", 136, "8A", "House", 83)},
           Case{"1 BPM slower in half time, the same key 8A, the same genre House and an energy "
                "much the same.",
                song("double", 250, "8A", "House", 83), song("off", 142, "8A", "House", 83)},
           Case{"The same tempo in double time, the same key 8A, the same genre House and an "
                "energy much the same.",
                song("half", 63, "8A", "House", 83), song("off", 104, "8A", "House", 83)},
           Case{"The same tempo, key 9A one step above 8A, the same genre House and more energy.",
                song("step", 126, "9A", "House", 90), song("two", 126, "10A", "House", 90)},
           Case{"The same tempo, the relative key 8B, the same genre House and less energy.",
                song("relative", 126, "8B", "House", 70), song("clash", 126, "2B", "House", 70)},
           Case{"The same tempo, the same key 8A, the related genre Tech House and an energy much "
                "the same.",
                song("related", 126, "8A", "Tech House", 80), song("rock", 126, "8A", "Rock", 80)},
           Case{
               "The same tempo, the same key 8A, the same genre House and an energy much the same.",
               song("rising", 126, "8A", "House", 83), song("falling", 126, "8A", "House", 50)},
       }) {
    const auto ranking = Ranking::of(house, {worse, best});
    ASSERT_EQ(ranking.size(), 2U);
    EXPECT_EQ(ranking[0].song.song, best.song);
    EXPECT_EQ(ranking[0].explanation, explanation);
    EXPECT_GT(ranking[0].score, ranking[1].score) << best.song;
  }
}

TEST(Ranking, differsWithEveryPartOfThePrompt) {
  std::set<std::vector<std::string>> rankings{titles(house, bundled())};
  for (const auto change : std::vector<void (*)(PromptFacts&)>{
           [](PromptFacts& facts) { facts.bpm = 174; }, [](PromptFacts& facts) { facts.bpm = 0; },
           [](PromptFacts& facts) { facts.key = "3B"; }, [](PromptFacts& facts) { facts.key = ""; },
           [](PromptFacts& facts) { facts.genre = "hip hop"; },
           [](PromptFacts& facts) { facts.genre = ""; },
           [](PromptFacts& facts) { facts.energy = 30; },
           [](PromptFacts& facts) { facts.count = 3; }}) {
    auto facts = house;
    change(facts);
    const auto ranking = titles(facts, bundled());
    EXPECT_EQ(ranking.size(), static_cast<size_t>(facts.count));
    EXPECT_TRUE(rankings.insert(ranking).second);
    EXPECT_EQ(ranking, titles(facts, bundled()));
  }
}

TEST(Ranking, fallsFromRankToRankAndNamesNoArtistTwice) {
  int last = 100;
  std::set<std::string> artists;
  for (const auto& ranked : Ranking::of(house, bundled())) {
    EXPECT_LE(ranked.score, last);
    EXPECT_GT(ranked.score, 50);
    EXPECT_TRUE(artists.insert(ranked.song.artist).second) << ranked.song.artist;
    last = ranked.score;
  }
}

TEST(Ranking, neverOffersTheCurrentSong) {
  auto facts = house;
  facts.count = static_cast<int>(bundled().size());
  for (const char* title : {"Blue Monday", "  blue MONDAY\u00a0", "Blue Monday (12\" Mix)",
                            "Blue Monday - Remastered", "ＢＬＵＥ Monday"}) {
    facts.song = title;
    facts.artist = "Somebody else";
    for (const auto& offered : titles(facts, bundled()))
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
