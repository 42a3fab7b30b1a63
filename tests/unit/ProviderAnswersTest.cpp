#include "ai/AnalysisValidation.h"
#include "ai/OpenAIResponses.h"
#include "ai/TinkerMessages.h"
#include "model/VelmorError.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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

/// "ok", or the failure's text.
std::string outcome(const std::function<Analysis()>& parse) {
  try {
    const auto analysis = parse();
    return "ok " + std::to_string(analysis.recommendations.size());
  } catch (const std::exception& error) {
    return error.what();
  }
}

std::string openAI(const std::string& bytes) {
  return outcome([&] { return OpenAIResponses::parse(bytes, 2); });
}

std::string tinker(const std::string& bytes) {
  return outcome([&] { return TinkerMessages::parseTinkerResponse(bytes, 2); });
}

const auto notJson = "The data couldn't be read because it isn't in the correct format.";
const auto unusable = "OpenAI did not return structured recommendations";
const auto undecodable = "decode recommendations";

} // namespace

TEST(OpenAIAnswer, IsReadFromTheFirstUsableCall) {
  const auto good = Json(twoTracks()).dump();
  const auto fractional = with({{"currentTrack", {{"energy", 1.5}}}}).dump();
  const auto output = [](const std::vector<Json>& items) { return Json{{"output", items}}.dump(); };
  const std::pair<std::string, std::string> cases[] = {
      {output({call(good)}), "ok 2"},
      {output({words("thinking"), call(fractional), call(good)}), "ok 2"},
      {output({call(good, "other"), call(twoTracks())}), unusable},
      {output({}), unusable},
      {output({1, call(good)}), unusable},
      {"{}", unusable},
      {"[]", "invalid OpenAI response"},
      {"<html>", notJson},
      {R"({"error":{"message":"No “quota” left."},"output":[]})", "No “quota” left."},
      {R"({"error":{"message":7},"output":{}})", unusable},
      {R"({"error":null,"output":null})", unusable},
      {output({call(with({{"playbackEvidence", " "}}).dump())}),
       "AI did not provide evidence of active playback"},
  };
  for (const auto& [bytes, expected] : cases)
    EXPECT_EQ(openAI(bytes), expected) << bytes;
}

TEST(TinkerAnswer, IsReadFromTheToolCallOrElseTheText) {
  const auto good = Json(twoTracks()).dump();
  const auto content = [](const std::vector<Json>& blocks) {
    return Json{{"content", blocks}}.dump();
  };
  const auto nothing = Json(Analysis{}).dump();
  const std::pair<std::string, std::string> cases[] = {
      {content({words("ignored"), toolUse(twoTracks())}), "ok 2"},
      {content({toolUse(twoTracks(), "other"), words(good)}), "ok 2"},
      {content({words("```json\n" + good.substr(0, 9)), words(good.substr(9) + "\n```\n")}),
       "ok 2"},
      {content({{{"type", "note"}, {"text", good}}}), "ok 2"},
      {content({words(nothing)}), "ok 0"},
      {content({words(with({{"recommendations", Json::array()}}).dump())}), undecodable},
      {content({words("I would play…")}), undecodable},
      {content({words("")}), undecodable},
      {content({}), undecodable},
      {content({words(good), 5}), undecodable},
      {R"({"content":"text"})", undecodable},
      {"{}", undecodable},
      {"7", "decode Tinker response"},
      {"", notJson},
      {R"({"error":{"message":"overloaded"},"content":[]})", "overloaded"},
      // No fallback once the tool was called.
      {content({toolUse(Json::object()), words(good)}),
       "The data couldn't be read because “playbackDetected” is missing."},
      {content({toolUse(nullptr)}), "The data couldn't be read because it isn't a JSON object."},
  };
  for (const auto& [bytes, expected] : cases)
    EXPECT_EQ(tinker(bytes), expected) << bytes;
}

TEST(Validation, ChecksEveryRuleInOrder) {
  const auto failure = [](const std::function<void(Analysis&)>& change) {
    auto analysis = twoTracks();
    change(analysis);
    return outcome([&] { return validateAnalysis(analysis, 2); });
  };
  EXPECT_EQ(failure([](Analysis& a) { a.playbackEvidence = "\n"; }),
            "AI did not provide evidence of active playback");
  EXPECT_EQ(failure([](Analysis& a) { a.currentTrack.artist = " "; }),
            "active playback was reported without a song and artist");
  EXPECT_EQ(failure([](Analysis& a) { a.recommendations.pop_back(); }),
            "AI returned 1 recommendations; expected 2");
  EXPECT_EQ(failure([](Analysis& a) { a.recommendations[1].artist = "\t"; }),
            "recommendation 2 is missing song or artist");
}

TEST(Validation, BringsTheAnswerIntoItsFinalForm) {
  auto given = twoTracks();
  given.playbackEvidence = " kept ";
  given.currentTrack.key = "F♯m";
  given.recommendations[0] = {
      .song = " S ", .artist = "A", .key = "a minor", .energy = 140, .compatibilityScore = 140};
  given.recommendations[1].compatibilityScore = -3;
  const auto valid = validateAnalysis(given, 2);
  EXPECT_EQ(valid.playbackEvidence, " kept ");
  EXPECT_EQ(valid.currentTrack.key, "11A");
  EXPECT_EQ(valid.recommendations[0].song, " S ");
  EXPECT_EQ(valid.recommendations[0].key, "8A");
  EXPECT_EQ(valid.recommendations[0].energy, 140);
  EXPECT_EQ(valid.recommendations[0].compatibilityScore, 100);
  EXPECT_EQ(valid.recommendations[1].compatibilityScore, 0);
  EXPECT_EQ(validateAnalysis(valid, 2), valid);
}

TEST(Validation, EmptiesAnAnswerWithoutPlayback) {
  auto given = twoTracks();
  given.playbackDetected = false;
  given.playbackEvidence = "";
  EXPECT_EQ(validateAnalysis(given, 10), Analysis{});
}
