#include "ai/AnalysisValidation.h"
#include "ai/OpenAIResponses.h"
#include "ai/TinkerMessages.h"
#include "base/Json.h"
#include "base/VelmorError.h"

#include <gtest/gtest.h>

#include <functional>

using namespace velmor;
using Json = nlohmann::json;

namespace {

Analysis twoTracks() {
  const TrackMetadata current{.song = "Now", .artist = "A"};
  const Recommendation next{.song = "Next", .artist = "B"};
  return {true, "evidence", current, {next, next}};
}

Json with(const Json& changes) {
  Json json = twoTracks();
  json.merge_patch(changes);
  return json;
}

Json call(const Json& arguments, const char* name = "submit_dj_analysis") {
  return {{"type", "function_call"}, {"name", name}, {"arguments", arguments}};
}

Json toolUse(const Json& input, const char* name = "submit_dj_analysis") {
  return {{"type", "tool_use"}, {"name", name}, {"input", input}};
}

Json words(const std::string& text) {
  return {{"type", "text"}, {"text", text}};
}

/// How many recommendations there are, or the failure's text.
std::string outcome(const std::function<Analysis()>& parse) {
  try {
    return "ok " + std::to_string(parse().recommendations.size());
  } catch (const std::exception& error) {
    return error.what();
  }
}

const auto unusable = "OpenAI did not return structured recommendations";
const auto undecodable = "decode recommendations";
const auto garbled = "The data couldn't be read because it isn't in the correct format.";

} // namespace

TEST(OpenAIAnswer, IsReadFromTheFirstUsableCall) {
  const auto good = Json(twoTracks()).dump();
  const auto fractional = with({{"currentTrack", {{"energy", 1.5}}}}).dump();
  const auto output = [](const std::vector<Json>& items) { return Json{{"output", items}}.dump(); };
  const std::pair<std::string, std::string> cases[] = {
      {output({call(good)}), "ok 2"},
      {output({words("thinking"), call(fractional), call(good)}), "ok 2"},
      {output({call(good, "other"), call(twoTracks())}), unusable},
      {output({1, call(good)}), unusable},
      {"[]", "invalid OpenAI response"},
      {" <html>", "OpenAI answered with a web page: is this network asking you to log in?"},
      {std::string("{}\0x", 4), garbled},
      {R"({"error":{"message":" \n"}})", "OpenAI reported an error without a reason."},
      {R"({"output":[],"incomplete_details":{"reason":"max_output_tokens"}})",
       "OpenAI's answer was cut off; ask for fewer songs"},
      {R"({"output":[],"incomplete_details":{"reason":"content_filter"}})", unusable},
      {R"({"error":{"message":"No “quota” left."},"output":[]})", "No “quota” left."},
      {R"({"error":null,"output":null})", unusable},
      {R"({"error":{"message":")" + std::string(20'000, 'x') + "\"}}", std::string(10'000, 'x')},
      {output({call(with({{"playbackEvidence", std::string(10'001, 'x')}}).dump()), call(good)}),
       "ok 2"},
      {std::string(200'000, '[') + std::string(200'000, ']'),
       "The data couldn't be read because it is nested too deeply."},
      {R"({"output":)" + std::string(99, '[') + R"("[\"]")" + std::string(99, ']') + "}", unusable},
  };
  for (const auto& [bytes, expected] : cases)
    EXPECT_EQ(outcome([&] { return OpenAIResponses::parse(bytes, 2); }), expected) << bytes;
}

TEST(TinkerAnswer, IsReadFromTheToolCallOrElseTheText) {
  const auto good = Json(twoTracks()).dump();
  const auto content = [](const std::vector<Json>& blocks) {
    return Json{{"content", blocks}}.dump();
  };
  const std::pair<std::string, std::string> cases[] = {
      {content({words("ignored"), toolUse(twoTracks())}), "ok 2"},
      {content({toolUse(twoTracks(), "other"), words(good)}), "ok 2"},
      {content({words("```json\n" + good.substr(0, 9)), words(good.substr(9) + "\n```\n")}),
       "ok 2"},
      {content({words(Json(Analysis{}).dump())}), "ok 0"},
      {content({words(with({{"recommendations", Json::array()}}).dump())}), undecodable},
      {content({words(good), 5}), undecodable},
      {R"({"content":"text"})", undecodable},
      {"7", "decode Tinker response"},
      {R"({"error":{"message":"overloaded"},"content":[]})", "overloaded"},
      {R"({"error":{"message":""},"content":[]})", "Tinker reported an error without a reason."},
      {Json{{"content", {toolUse({{"playbackDetected", true}})}}, {"stop_reason", "max_tokens"}}
           .dump(),
       "Tinker's answer was cut off; ask for fewer songs"},
      {"{} {", garbled},
      // No fallback once the tool was called.
      {content({toolUse(Json::object()), words(good)}),
       "The data couldn't be read because “playbackDetected” is missing."},
  };
  for (const auto& [bytes, expected] : cases)
    EXPECT_EQ(outcome([&] { return TinkerMessages::parseTinkerResponse(bytes, 2); }), expected)
        << bytes;
}

TEST(Validation, ChecksEveryRuleInOrder) {
  const std::pair<std::function<void(Analysis&)>, const char*> cases[] = {
      {[](Analysis& a) { a.playbackEvidence = "\n"; },
       "AI did not provide evidence of active playback"},
      {[](Analysis& a) { a.currentTrack.artist = " "; },
       "active playback was reported without a song and artist"},
      {[](Analysis& a) { a.recommendations.pop_back(); },
       "AI returned 1 recommendations; expected 2"},
      {[](Analysis& a) { a.recommendations[1].artist = "\t"; },
       "recommendation 2 is missing song or artist"}};
  for (const auto& [change, failure] : cases) {
    auto analysis = twoTracks();
    change(analysis);
    EXPECT_EQ(outcome([&] { return validateAnalysis(analysis, 2); }), failure);
  }
}

TEST(Validation, BringsTheAnswerIntoItsFinalForm) {
  auto given = twoTracks();
  given.playbackEvidence = " kept ";
  given.recommendations[0] = {
      .song = " S ", .artist = "A", .key = "a minor", .energy = 140, .compatibilityScore = 140};
  given.recommendations[1].compatibilityScore = -3;
  auto expected = given;
  expected.recommendations[0].key = "8A";
  expected.recommendations[0].compatibilityScore = 100;
  expected.recommendations[1].compatibilityScore = 0;
  EXPECT_EQ(validateAnalysis(given, 2), expected);
}

TEST(Validation, EmptiesAnAnswerWithoutPlayback) {
  auto given = twoTracks();
  given.playbackDetected = false;
  given.playbackEvidence = "";
  EXPECT_EQ(validateAnalysis(given, 10), Analysis{});
}
