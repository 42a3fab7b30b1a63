#include "Catalogue.h"
#include "CatalogueError.h"
#include "Options.h"
#include "Provider.h"
#include "Ranking.h"
#include "RefusalAnswer.h"
#include "RequestRecord.h"
#include "RightRequests.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

namespace velmor::tests {
namespace {

using nlohmann::json;
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

TEST(Catalogue, refusesWhatCannotBeRight) {
  const json right = {{"song", "A"}, {"artist", "B"},    {"album", ""}, {"bpm", 120},
                      {"key", "8A"}, {"genre", "House"}, {"energy", 50}};
  const auto read = [](const json& songs) {
    std::istringstream input(songs.dump());
    return Catalogue::read(input).size();
  };
  EXPECT_EQ(read(json::array({right})), 1U);
  EXPECT_THROW(read(json::array({right, right})), CatalogueError);
  for (const auto& change : std::vector<json>{{{"song", " "}},
                                              {{"artist", ""}},
                                              {{"bpm", 12}},
                                              {{"bpm", "120"}},
                                              {{"key", "13A"}},
                                              {{"key", "8a"}},
                                              {{"genre", "Polka"}},
                                              {{"genre", "house"}},
                                              {{"energy", 101}},
                                              {{"energy", nullptr}}}) {
    auto wrong = right;
    wrong.update(change);
    EXPECT_THROW(read(json::array({wrong})), CatalogueError) << change;
  }
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

TEST(Ranking, withNothingKnownStillGivesTheWantedNumber) {
  const auto ranking = Ranking::of({"Night", "Nobody", "", 0, "", "", 0, "", "", 10, 7}, bundled());
  ASSERT_EQ(ranking.size(), 7U);
  EXPECT_EQ(ranking.front().score, 50);
}

Provider provider() {
  return {{bundled(), RightRequests::key, "1.4.0"}, [] { return 1700000000; }};
}

json answered(Protocol protocol) {
  const auto body = RightRequests::body(protocol, RightRequests::prompt()).dump();
  const auto result = provider().answer(RightRequests::request(protocol, body));
  return json::parse(std::get<Answer>(result).body);
}

TEST(Provider, answersInTheShapeOfEachProtocol) {
  const auto response = answered(Protocol::responses);
  EXPECT_EQ(response.at("object"), "response");
  EXPECT_TRUE(response.at("error").is_null());
  EXPECT_EQ(response.at("output").at(0).at("type"), "reasoning");
  const auto call = response.at("output").at(1);
  EXPECT_EQ(call.at("type"), "function_call");
  EXPECT_EQ(call.at("name"), "submit_dj_analysis");

  const auto message = answered(Protocol::messages);
  EXPECT_EQ(message.at("stop_reason"), "tool_use");
  EXPECT_EQ(message.at("content").at(0).at("type"), "text");
  const auto use = message.at("content").at(1);
  EXPECT_EQ(use.at("type"), "tool_use");

  // The protocols carry one and the same analysis, as text and as an object.
  const auto analysis = use.at("input");
  EXPECT_EQ(json::parse(call.at("arguments").get<std::string>()), analysis);
  EXPECT_EQ(analysis.at("playbackDetected"), true);
  EXPECT_EQ(analysis.at("playbackEvidence"), "macOS system media session reports Playing");
  EXPECT_EQ(analysis.at("currentTrack"),
            json::parse(R"({"song":"Night \"Drive\"","artist":"Nobody & Co","album":"","bpm":128.0,
                            "key":"8A","genre":"House","energy":70,
                            "other":"Verified by a test","confidence":100})"));
  EXPECT_EQ(analysis.at("recommendations").size(), 5U);
  for (const auto& one : analysis.at("recommendations"))
    EXPECT_EQ(one.size(), 9U);
}

TEST(Provider, namesTheRelease) {
  const auto result = provider().answer(RightRequests::request(Protocol::release, ""));
  const auto release = json::parse(std::get<Answer>(result).body);
  EXPECT_EQ(release.at("ok"), true);
  EXPECT_EQ(release.at("version"), "1.4.0");
}

TEST(RefusalAnswer, hasTheShapeOfItsProtocol) {
  const Refusal refusal{401, {"/headers/x-api-key", "missing \xff"}};
  struct Case {
    std::optional<Protocol> protocol;
    const char* path;
  };
  for (const auto& [protocol, path] :
       {Case{Protocol::responses, "/error/message"}, Case{Protocol::messages, "/error/message"},
        Case{Protocol::release, "/message"}, Case{std::nullopt, "/error/message"}}) {
    const auto answer = RefusalAnswer::of(protocol, refusal);
    EXPECT_EQ(answer.status, 401);
    EXPECT_EQ(json::parse(answer.body).at(json::json_pointer(path)),
              "/headers/x-api-key: missing \ufffd");
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

TEST(Options, readsTheCommandLine) {
  const auto read = [](std::vector<const char*> arguments) { return Options::read(arguments); };
  const auto result = read({"--port", "8080", "--delay", "0.25", "--key", "k", "--version", "x"});
  const auto& options = std::get<Options>(result);
  EXPECT_EQ(options.port, 8080);
  EXPECT_EQ(options.delay.count(), 250);
  EXPECT_EQ(options.key, "k");
  EXPECT_EQ(options.version, "x");
  for (const auto& wrong : std::vector<std::vector<const char*>>{{"--nonsense"},
                                                                 {"word"},
                                                                 {"--port"},
                                                                 {"--port", "65536"},
                                                                 {"--port", "8o"},
                                                                 {"--delay", "-1"},
                                                                 {"--delay", "nan"},
                                                                 {"--key", ""},
                                                                 {"--key", "a%41"}})
    EXPECT_TRUE(std::holds_alternative<std::string>(read(wrong))) << wrong.front();
}

} // namespace
} // namespace velmor::tests
