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

TEST(Records, IntegersTakeWholeNumbersOnly) {
  const std::pair<const char*, bool> cases[] = {{"85.0", true},  {"8.5e1", true},
                                                {"-3", true},    {"42.5", false},
                                                {"true", false}, {"9223372036854775808", false},
                                                {"1e30", false}};
  for (const auto& [number, accepted] : cases) {
    auto json = analysisJson();
    json["currentTrack"]["energy"] = Json::parse(number);
    if (accepted)
      EXPECT_NO_THROW(decode(json)) << number;
    else
      EXPECT_THROW(decode(json), DecodingError) << number;
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
