#include "model/Records.h"

#include "base/Json.h"
#include "model/AppConfig.h"

#include <gtest/gtest.h>

#include <limits>

using namespace velmor;
using Json = nlohmann::json;

namespace {

Json analysisJson() {
  return Json::parse(R"({
    "playbackDetected": true, "playbackEvidence": "yes",
    "currentTrack": {"song": "One", "artist": "A", "album": "", "bpm": 128, "key": "8A",
                     "genre": "House", "energy": 70, "other": "", "confidence": 100},
    "recommendations": [{"song": "Two", "artist": "B", "album": "C", "bpm": 127.5, "key": "9A",
                         "genre": "House", "energy": 75, "compatibilityScore": 92,
                         "explanation": "close"}]})");
}

Analysis decode(const Json& json) {
  return jsonDecoder().decode<Analysis>(json.dump());
}

} // namespace

TEST(Records, RoundTripWithoutUnknownKeys) {
  auto json = analysisJson();
  json["thoughts"] = "…";
  json["currentTrack"]["year"] = 1999;
  EXPECT_EQ(jsonEncoder().encode(decode(json)), analysisJson().dump());
}

TEST(Records, EveryKeyIsRequiredInItsOwnType) {
  // Every member at every depth: missing, null, and of a type that no field has.
  const auto members = analysisJson().flatten();
  for (const auto& [path, value] : members.items()) {
    const Json::json_pointer pointer(path);
    auto without = analysisJson();
    without[pointer.parent_pointer()].erase(pointer.back());
    EXPECT_THROW(decode(without), DecodingError) << path;
    for (const Json& wrong : {Json(nullptr), Json(Json::value_t::object), Json(Json::array({1}))}) {
      auto mistyped = analysisJson();
      mistyped[pointer] = wrong;
      EXPECT_THROW(decode(mistyped), DecodingError) << path;
    }
  }
  auto without = analysisJson();
  without.erase("recommendations");
  without["playbackDetected"] = false;
  EXPECT_THROW(decode(without), DecodingError);
  for (const auto* text : {"", "[1]", "1e999", "{\"a\":\"\xFF\"}"})
    EXPECT_THROW((void)jsonDecoder().decode<Analysis>(text), DecodingError) << text;
}

TEST(Records, SayWhichMemberIsWrongAndWhy) {
  // "" where the number is taken.
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"energy", "85.0", ""},
      {"energy", "8.5e1", ""},
      {"energy", "-3", ""},
      {"energy", "9223372036854775807", ""},
      {"energy", "-9223372036854775808", ""},
      {"energy", "42.5", "is not a whole number"},
      {"energy", "9223372036854775808", "is too large"},
      {"energy", "-9223372036854775809", "is too large"},
      {"energy", "18446744073709551616", "is too large"},
      {"energy", "1e30", "is too large"},
      {"energy", "true", "is not a number"},
      {"bpm", "128", ""},
      {"bpm", "\"128\"", "is not a number"},
      {"song", "1", "has the wrong type"},
      {"song", "null", "has the wrong type"},
  };
  for (const auto& [key, value, reason] : cases) {
    auto json = analysisJson();
    json["currentTrack"][key] = Json::parse(value);
    std::string message;
    try {
      (void)decode(json);
    } catch (const DecodingError& error) {
      message = error.what();
    }
    const auto expected =
        "The data couldn't be read because “" + std::string(key) + "” " + reason + ".";
    EXPECT_EQ(message, *reason ? expected : "") << value;
  }
}

TEST(Records, AreEqualWhenEveryFieldIs) {
  const auto same = decode(analysisJson());
  EXPECT_EQ(same, decode(analysisJson()));
  const auto members = analysisJson().flatten();
  for (const auto& [path, value] : members.items()) {
    auto json = analysisJson();
    json[Json::json_pointer(path)] = value.is_string()   ? Json("other")
                                     : value.is_number() ? Json(1)
                                                         : Json(false);
    EXPECT_FALSE(decode(json) == same) << path;
  }
}

TEST(Records, EncodeWhatThePageNeeds) {
  const auto empty = Json::parse(jsonEncoder().encode(VisionResult{}));
  EXPECT_EQ(empty.at("recommendations"), Json::array());
  const auto update = Json::parse(jsonEncoder().encode(UpdateInfo{.downloadUrl = "d"}));
  EXPECT_EQ(update.at("downloadUrl").dump() + update.at("releaseNotesUrl").dump(), "\"d\"\"\"");
  EXPECT_EQ(jsonEncoder().encode(std::string("a\xFF\"\\\u2028</script>\x01")),
            "\"a\uFFFD\\\"\\\\\u2028</script>\\u0001\"");
  TrackMetadata track;
  track.bpm = std::numeric_limits<double>::infinity();
  EXPECT_THROW(static_cast<void>(jsonEncoder().encode(track)), EncodingError);
}
