#include "ai/AIClient.h"

#include "ai/ProviderProbe.h"
#include "ai/RecommendationPrompt.h"
#include "base/Json.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/support/Outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmor;
using Json = nlohmann::json;

namespace {

const TrackMetadata playing{
    .song = "One More Time", .artist = "Daft Punk", .bpm = 127.456, .key = "D major"};

Json answerFor(std::size_t count) {
  const Recommendation next{.song = "S", .artist = "A", .key = "Am", .compatibilityScore = 140};
  return Analysis{.playbackDetected = true,
                  .playbackEvidence = "playing",
                  .currentTrack = {.song = "Something else", .artist = "Model"},
                  .recommendations = std::vector<Recommendation>(count, next)};
}

class AIClientTest : public testing::Test {
protected:
  AIClientTest() {
    system.http.handler = [this](const HttpRequest& sent) -> HttpResponse {
      const auto answer = answerFor(Json::parse(sent.body).at("model") == "short" ? 1 : 3);
      Json call{{"name", "submit_dj_analysis"}};
      if (sent.url == "http://openai") {
        call.update({{"type", "function_call"}, {"arguments", answer.dump()}});
        return {status, Json{{"output", {call}}}.dump()};
      }
      call.update({{"type", "tool_use"}, {"input", answer}});
      return {status, Json{{"content", {call}}}.dump()};
    };
  }

  std::string run(const AIClient::Request& wanted) {
    return taskOutcome(system.loop, client.recommend(wanted), analysis);
  }

  FakePlatform system;
  AIClient client{system.platform, {"http://tinker"}, {"http://openai"}};
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

TEST(RecommendationPrompt, WritesNumbersAsAgreed) {
  const auto prompt = RecommendationPrompt::text(playing, "Mixxx", 7.9, 5);
  for (const auto* const part :
       {"- BPM: 127.46\n- Key: D major\n", "- Energy: 0/100\n", "- Source application: Mixxx\n",
        "Recommend exactly 5 real songs", "within +/- 7 BPM"}) {
    EXPECT_THAT(prompt, testing::HasSubstr(part));
  }
}

TEST_F(AIClientTest, SendsToEachProviderWhatItsProtocolWants) {
  const auto* const instructions = RecommendationPrompt::system;
  const std::tuple<const char*, const char*, const char*, Json> cases[] = {
      {"GPT-4.1 ",
       "http://openai",
       "Bearer  key ",
       {{"instructions", instructions},
        {"max_output_tokens", 3000},
        {"tool_choice", {{"type", "function"}, {"name", "submit_dj_analysis"}}}}},
      {"thinkingmachines/Inkling-Small",
       "http://tinker",
       " key ",
       {{"system", instructions},
        {"max_tokens", 3000},
        {"temperature", 0.1},
        {"thinking", {{"type", "disabled"}}},
        {"tool_choice", {{"type", "tool"}, {"name", "submit_dj_analysis"}}}}}};
  for (const auto& [model, url, key, settings] : cases) {
    request.model = model;
    EXPECT_EQ(run(request), "ok");
    const auto& sent = system.http.requests.back();
    EXPECT_EQ(sent.url, url);
    EXPECT_EQ(sent.headers.front().second, key);
    EXPECT_EQ(sent.headers.back(),
              std::pair(std::string("content-type"), std::string("application/json")));
    EXPECT_EQ(sent.timeout, Seconds{60});
    const auto body = Json::parse(sent.body);
    auto fixed = body;
    for (const auto* const told : {"model", "tools", "messages", "input"})
      fixed.erase(told);
    EXPECT_EQ(fixed, settings);
    EXPECT_EQ(body.at("model"), model) << "to the letter";
    EXPECT_THAT(sent.body, testing::HasSubstr("exactly 3 ranked recommendations."));
    EXPECT_THAT(sent.body, testing::HasSubstr(R"("maxItems":3,"minItems":0)"));
    int closedObjects = 0;
    const auto members = body.at("tools").flatten();
    for (const auto& [path, value] : members.items())
      closedObjects += path.ends_with("/additionalProperties") && value == false;
    EXPECT_EQ(closedObjects, sent.url == "http://openai" ? 3 : 0);
  }
  EXPECT_EQ(system.http.configurations.at(0).requestTimeout, Seconds{45});
  EXPECT_EQ(system.http.configurations.at(0).resourceTimeout, Seconds{170});
}

TEST_F(AIClientTest, PutsTheGivenTrackBackAndValidates) {
  ASSERT_EQ(run(request), "ok");
  auto expected = playing;
  expected.key = "10B";
  EXPECT_EQ(analysis.currentTrack, expected);
  EXPECT_EQ(analysis.recommendations.at(2).compatibilityScore, 100);
}

TEST_F(AIClientTest, CancellingEndsTheExchangeAndNoOther) {
  const auto ask = [&]() -> Task<void> {
    try {
      static_cast<void>(co_await client.recommend(request));
    } catch (const std::exception&) {
      // What a stopped exchange throws is nobody's business.
    }
  };
  TaskGroup tasks(system.loop);
  system.loop.holdWorkers();
  const auto first = tasks.start(ask());
  const auto second = tasks.start(ask());
  system.loop.runPending();
  first.cancel();
  system.loop.finishWorkers();
  ASSERT_EQ(system.http.requests.size(), 2U);
  EXPECT_TRUE(system.http.requests.at(0).cancellation.isCancelled());
  EXPECT_FALSE(system.http.requests.at(1).cancellation.isCancelled());
}

TEST_F(AIClientTest, FailsWithASentence) {
  auto blank = request;
  blank.apiKey = " \n";
  EXPECT_EQ(run(blank), "Tinker API key is not configured");
  auto broken = request;
  broken.apiKey = "key\n";
  EXPECT_EQ(run(broken), "The API key contains a line break. Enter it again without one.");
  auto nameless = request;
  nameless.current.artist = "";
  EXPECT_EQ(run(nameless), "current track metadata is incomplete");
  EXPECT_TRUE(system.http.requests.empty());
  auto shortAnswer = request;
  shortAnswer.model = "short";
  EXPECT_EQ(run(shortAnswer), "AI returned 1 recommendations; expected 3");
  for (const int code : {199, 300, 429}) {
    status = code;
    EXPECT_EQ(run(request), "request failed with status " + std::to_string(code));
  }
}

TEST(ProviderEndpoint, IsWhatTheEnvironmentNamesOrSaysWhatIsWrongWithIt) {
  FakePlatform system;
  const auto bad = "VELMOR_OPENAI_URL is not a whole address that begins with http:// or https://.";
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"", ProviderEndpoint::openAIDefault, ""},
      {" \n", ProviderEndpoint::openAIDefault, ""},
      {" HTTP://localhost:8080/v1\n", "HTTP://localhost:8080/v1", ""},
      {"localhost:8080", "localhost:8080", bad},
      {"https:///v1", "https:///v1", bad},
      {"http://a b", "http://a b", bad}};
  for (const auto& [given, address, fault] : cases) {
    system.environment.variables["VELMOR_OPENAI_URL"] = given;
    const auto endpoint = ProviderEndpoint::of(system.platform, ModelProvider::OpenAI);
    EXPECT_EQ(endpoint.address, address);
    EXPECT_EQ(endpoint.fault, fault);
  }
}

TEST(ProviderProbe, TellsWhatStandsInTheWay) {
  using Fault = ProviderProbe::Fault;
  FakePlatform system;
  HttpResponse answer;
  system.http.handler = [&](const HttpRequest&) { return answer; };
  const auto repeated = R"({"error":{"message":"Incorrect key sk-secret"}})";
  const std::tuple<int, const char*, Fault> cases[] = {
      {200, "{}", Fault::none},
      {401, repeated, Fault::key},
      {403, "", Fault::key},
      {404, R"({"error":{"message":"no"}})", Fault::model},
      {429, "slow", Fault::service},
      {503, "<html>", Fault::service},
      {200, "<html>", Fault::reachability},
      {200, "OK", Fault::reachability}};
  for (const auto* const model : {"gpt-5", "some/model"}) {
    for (const auto& [status, body, fault] : cases) {
      answer = {status, body};
      const auto probe = ProviderProbe::ask(system.platform, "sk-secret", model);
      EXPECT_EQ(probe.fault, fault) << status << body;
      EXPECT_THAT(probe.detail, testing::Not(testing::HasSubstr("sk-"))) << status;
      EXPECT_EQ(Json::parse(system.http.requests.back().body).at("model"), model);
    }
  }
  system.http.handler = [](const HttpRequest&) -> HttpResponse { throw TransportError("gone"); };
  EXPECT_EQ(ProviderProbe::ask(system.platform, "k", "gpt-5").detail, "gone");
  EXPECT_EQ(ProviderProbe::ask(system.platform, "k\n", "gpt-5").fault, Fault::key);
}
