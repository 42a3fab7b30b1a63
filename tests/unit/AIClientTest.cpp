#include "ai/AIClient.h"

#include "ai/AnalysisTool.h"
#include "ai/RecommendationPrompt.h"
#include "model/VelmorError.h"
#include "platform/TaskGroup.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velmor;
using Json = nlohmann::json;

namespace {

const TrackMetadata playing{.song = "One More Time",
                            .artist = "Daft Punk",
                            .album = "Discovery",
                            .bpm = 127.456,
                            .key = "D major",
                            .genre = "House",
                            .energy = 0,
                            .other = "Verified by macOS media session",
                            .confidence = 100};

Json answerFor(std::int64_t count) {
  Recommendation recommendation{.song = "S", .artist = "A", .key = "Am", .compatibilityScore = 140};
  Analysis analysis{.playbackDetected = true,
                    .playbackEvidence = "playing",
                    .currentTrack = {.song = "Something else", .artist = "Model"},
                    .recommendations = {}};
  for (; count > 0; --count)
    analysis.recommendations.push_back(recommendation);
  return analysis;
}

class AIClientTest : public testing::Test {
protected:
  AIClientTest() {
    system.http.handler = [this](const HttpRequest& sent) -> HttpResponse {
      const auto count = Json::parse(sent.body).at("model") == "short" ? 1 : 3;
      const Json openAI = {{"output",
                            {{{"type", "function_call"},
                              {"name", "submit_dj_analysis"},
                              {"arguments", answerFor(count).dump()}}}}};
      const Json tinker = {
          {"content",
           {{{"type", "tool_use"}, {"name", "submit_dj_analysis"}, {"input", answerFor(count)}}}}};
      return {status, (sent.url == "http://openai" ? openAI : tinker).dump()};
    };
  }

  /// The answer's first recommendation's song and key, or the failure's text.
  std::string run(const AIClient::Request& wanted) {
    std::string outcome = "unfinished";
    const auto task = [](AIClientTest& test, AIClient::Request given,
                         std::string& text) -> Task<void> {
      try {
        test.analysis = co_await test.client.recommend(given);
        text = "ok";
      } catch (const std::exception& error) {
        text = error.what();
      }
    };
    TaskGroup tasks(system.loop);
    tasks.start(task(*this, wanted, outcome));
    system.loop.runPending();
    return outcome;
  }

  FakePlatform system;
  AIClient client{system.platform, "http://tinker", "http://openai"};
  AIClient::Request request{.apiKey = " key ",
                            .model = "GPT-4.1 ",
                            .current = playing,
                            .source = "Mixxx",
                            .bpmTolerance = 7.9,
                            .recommendationCount = 3};
  Analysis analysis;
  int status = 200;
};

} // namespace

TEST(RecommendationPrompt, IsTheAgreedText) {
  EXPECT_EQ(RecommendationPrompt::text(playing, "Mixxx", 12.9, 5),
            R"(The currently playing track was verified through the macOS system media session.

Current track:
- Song: One More Time
- Artist: Daft Punk
- Album: Discovery
- BPM: 127.46
- Key: D major
- Genre: House
- Energy: 0/100
- Audio/source notes: Verified by macOS media session
- Source application: Mixxx

Recommend exactly 5 real songs for the next DJ mix. Never recommend the current track. Prioritize similar BPM (normally within +/- 12 BPM unless half/double time is appropriate), compatible Camelot key, related genre and mood, suitable energy progression, phrasing, and overall set flow. Do not invent facts about the current track when a field is empty or zero.

Submit playbackDetected=true, playbackEvidence="macOS system media session reports Playing", the supplied current track, and exactly 5 ranked recommendations through the required tool.)");
}

TEST(AnalysisTool, ClosesEveryObjectOnceInStrictForm) {
  const auto tool = AnalysisTool::analysisTool(5);
  EXPECT_TRUE(tool.at("description")
                  .get<std::string>()
                  .ends_with("exactly 5 ranked "
                             "recommendations."));
  const auto& schema = tool.at("input_schema");
  const auto& list = schema.at("properties").at("recommendations");
  EXPECT_EQ(list.at("minItems").dump() + list.at("maxItems").dump(), "05");
  EXPECT_EQ(list.at("items").at("required"),
            Json::parse(R"(["album","artist","bpm","compatibilityScore","energy","explanation",
                            "genre","key","song"])"));

  const auto strict = AnalysisTool::strictObjectSchema(schema);
  int closed = 0;
  const auto members = strict.flatten();
  auto reopened = members;
  for (const auto& [path, value] : members.items()) {
    if (!path.ends_with("/additionalProperties")) continue;
    EXPECT_EQ(value, false);
    reopened.erase(path);
    ++closed;
  }
  EXPECT_EQ(closed, 3);
  EXPECT_EQ(reopened.unflatten(), schema.flatten().unflatten());
}

TEST_F(AIClientTest, SendsToOpenAIWhatItsProtocolWants) {
  EXPECT_EQ(run(request), "ok");
  const auto& sent = system.http.requests.at(0);
  EXPECT_EQ(sent.method + " " + sent.url, "POST http://openai");
  EXPECT_EQ(sent.timeout, Seconds{60});
  EXPECT_EQ(system.http.configurations.at(0).requestTimeout, Seconds{45});
  EXPECT_EQ(Json(sent.headers), Json::parse(R"([["Authorization","Bearer  key "],
                                                ["content-type","application/json"]])"));
  auto body = Json::parse(sent.body);
  EXPECT_EQ(body["tools"][0].size(), 5U);
  EXPECT_EQ(body["tools"][0]["parameters"],
            AnalysisTool::strictObjectSchema(AnalysisTool::analysisTool(3)["input_schema"]));
  EXPECT_EQ(body["input"][0]["content"][0]["text"],
            RecommendationPrompt::text(playing, "Mixxx", 7.9, 3));
  body.erase("tools");
  body["input"][0]["content"][0].erase("text");
  EXPECT_EQ(body, Json::parse(R"({
    "model": "GPT-4.1 ", "max_output_tokens": 3000,
    "instructions": "You are an expert DJ and music-metadata analyst. Always finish by calling the required result tool.",
    "input": [{"role": "user", "content": [{"type": "input_text"}]}],
    "tool_choice": {"type": "function", "name": "submit_dj_analysis"}})"));
}

TEST_F(AIClientTest, SendsToTinkerWhatItsProtocolWants) {
  request.model = "thinkingmachines/Inkling-Small";
  EXPECT_EQ(run(request), "ok");
  const auto& sent = system.http.requests.at(0);
  EXPECT_EQ(sent.url, "http://tinker");
  EXPECT_EQ(Json(sent.headers),
            Json::parse(R"([["x-api-key"," key "],["anthropic-version","2023-06-01"],
                            ["content-type","application/json"]])"));
  auto body = Json::parse(sent.body);
  EXPECT_EQ(body["tools"], Json::array({AnalysisTool::analysisTool(3)}));
  body.erase("tools");
  body["messages"][0]["content"][0].erase("text");
  EXPECT_EQ(body, Json::parse(R"({
    "model": "thinkingmachines/Inkling-Small", "max_tokens": 3000, "temperature": 0.1,
    "system": "You are an expert DJ and music-metadata analyst. Always finish by calling the required result tool.",
    "thinking": {"type": "disabled"},
    "tool_choice": {"type": "tool", "name": "submit_dj_analysis"},
    "messages": [{"role": "user", "content": [{"type": "text"}]}]})"));
}

TEST_F(AIClientTest, PutsTheGivenTrackBackAndValidates) {
  ASSERT_EQ(run(request), "ok");
  auto expected = playing;
  expected.key = "10B";
  EXPECT_EQ(analysis.currentTrack, expected);
  EXPECT_EQ(analysis.recommendations.at(2).key, "8A");
  EXPECT_EQ(analysis.recommendations.at(2).compatibilityScore, 100);
}

TEST_F(AIClientTest, FailsEarlyWithoutSending) {
  auto blank = request;
  blank.apiKey = " \n";
  EXPECT_EQ(run(blank), "Tinker API key is not configured");
  auto noArtist = request;
  noArtist.current.artist = "";
  EXPECT_EQ(run(noArtist), "current track metadata is incomplete");
  EXPECT_TRUE(system.http.requests.empty());
}

TEST_F(AIClientTest, PassesFailuresOn) {
  auto shortAnswer = request;
  shortAnswer.model = "short";
  EXPECT_EQ(run(shortAnswer), "AI returned 1 recommendations; expected 3");
  for (const int code : {199, 300, 429, 503}) {
    status = code;
    EXPECT_EQ(run(request), "request failed with status " + std::to_string(code));
  }
  system.http.handler = [](const HttpRequest&) -> HttpResponse {
    throw TransportError("The request timed out.");
  };
  EXPECT_EQ(run(request), "The request timed out.");
}
