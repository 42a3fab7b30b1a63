#include "nowplaying/readers/TsafArchive.h"

#include "tests/nowplaying/TsafBuilder.h"

#include <gtest/gtest.h>

#include <limits>

using namespace velmor;

namespace {

const std::string identifier = "0123456789abcdef0123456789abcdef";

TsafBuilder start(const std::string& title = "girl$ (SMTHNG Extended Remix)") {
  TsafBuilder builder;
  builder.object("ADCHistorySessionItem").string("uuid", "6E1C").object("ADCMediaItemTitleID");
  builder.string("title", title).string("artist", "Dom Dolla, Röyksopp");
  return builder;
}

TEST(TsafArchive, ReadsAlignedNumbersWhateverThePadding) {
  for (std::size_t length = 1; length <= 8; ++length) {
    const std::string title(length, 'x');
    const auto item = TsafArchive::parseHistoryItem(start(title)
                                                        .number("duration", 307.879150390625)
                                                        .string("titleID", identifier)
                                                        .number("startTime", 797499702.933)
                                                        .bytes());
    ASSERT_TRUE(item) << length;
    EXPECT_EQ(item->title, title);
    EXPECT_EQ(item->artist, "Dom Dolla, Röyksopp");
    EXPECT_EQ(item->titleID, identifier);
    EXPECT_EQ(item->period.duration.count(), 307.879150390625);
    EXPECT_NEAR(item->period.started.time_since_epoch().count(), 1775806902.933, 1e-6);
  }
}

TEST(TsafArchive, ReadsADurationOfFourBytes) {
  const std::pair<TsafBuilder, double> rows[] = {
      {start().shortNumber("duration", 240.5F), 240.5},
      {start().number("duration", 86400), 86400},
      {start().shortNumber("duration", 86400), 86400},
      {start().shortNumber("duration", 86401), 0},
      {start().number("duration", 1e40), 0}, // valid in neither form
      {start().number("duration", -240), 0},
      {start().number("duration", std::numeric_limits<double>::infinity()), 0},
      {start().shortNumber("duration", -1.0F), 0},
      {start(), 0},
  };
  for (auto [builder, duration] : rows) {
    const auto item = TsafArchive::parseHistoryItem(builder.number("startTime", 8e8).bytes());
    EXPECT_EQ(item ? item->period.duration.count() : 0, duration);
  }
}

TEST(TsafArchive, NeedsTitleArtistDurationAndStart) {
  const auto complete = [](TsafBuilder builder) {
    return builder.number("duration", 200).number("startTime", 8e8).bytes();
  };
  ASSERT_TRUE(TsafArchive::parseHistoryItem(complete(start())));
  auto notAnArchive = complete(start());
  notAnArchive[0] = 't';
  const auto otherClass =
      TsafBuilder().object("ADCOther").string("title", "t").string("artist", "a");
  const std::vector<std::pair<const char*, TsafArchive::Bytes>> incomplete{
      {"signature", notAnArchive},
      {"class", complete(otherClass)},
      {"title", complete(start(" \n"))},
      {"valid title", complete(start("\xFFx"))},
      {"duration", start().number("startTime", 8e8).bytes()},
      {"start", start().number("duration", 200).bytes()},
      {"positive start", start().number("duration", 200).number("startTime", -1).bytes()},
  };
  for (const auto& [missing, blob] : incomplete)
    EXPECT_FALSE(TsafArchive::parseHistoryItem(blob)) << "without " << missing;
}

TEST(TsafArchive, TellsIdentifiersFromOtherTexts) {
  const auto titleID = [](const std::string& value, const std::string& end = std::string(1, 0)) {
    auto complete = start().number("duration", 200).number("startTime", 8e8);
    return TsafArchive::parseHistoryItem(complete.raw("\x08" + value + end).bytes())->titleID;
  };
  EXPECT_EQ(titleID(identifier), identifier);
  EXPECT_EQ(titleID("xyz" + identifier + "ff"), identifier);
  EXPECT_EQ(titleID("0123456789ABCDEF0123456789ABCDEF"), "");
  EXPECT_EQ(titleID(identifier.substr(1)), "");
  EXPECT_EQ(titleID(identifier, ""), "") << "cut off";
}

TEST(TsafArchive, ReadsHexadecimalText) {
  EXPECT_EQ(TsafArchive::bytes(" 00fFA1\n"), (TsafArchive::Bytes{0x00, 0xFF, 0xA1}));
  for (const auto* const text : {"", " ", "0", "0g", "-1"})
    EXPECT_FALSE(TsafArchive::bytes(text)) << text;
}

} // namespace
