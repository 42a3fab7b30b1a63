#include "nowplaying/readers/DjayDetector.h"

#include "tests/nowplaying/TsafBuilder.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/Outcome.h"

#include <gtest/gtest.h>

#include <optional>

using namespace velmor;

namespace {

constexpr auto firstPath = "Music/djay/djay Media Library.djayMediaLibrary/MediaLibrary.db";
constexpr auto secondPath = "Music/djay/djay Media Library/MediaLibrary.db";
const std::string found = "Nightfall / A, B / ";
const std::string identifier = "00112233445566778899aabbccddeeff";

class DjayHome : public HomeWithDatabases {
public:
  DjayHome() { applications.running = {{"com.algoriddim.djay-mac", "djay Pro", 3}}; }

  /// A library whose newest track began that long ago, or that has no history.
  void addLibrary(const char* path, std::optional<double> secondsAgo) {
    addDatabase(path, "CREATE TABLE database2(collection, key, data BLOB);"
                      "CREATE TABLE secondaryIndex_mediaItemAnalyzedDataIndex(bpm REAL);"
                      "INSERT INTO secondaryIndex_mediaItemAnalyzedDataIndex VALUES(124.5);"
                      "INSERT INTO database2 VALUES('mediaItemAnalyzedData', '" +
                          identifier + "', x'00')");
    if (!secondsAgo) return;
    addDatabase(path, "INSERT INTO database2 VALUES('historySessionItems', 'old', x'54534146'),"
                      "('historySessionItems', 'new', x'" +
                          entry(*secondsAgo) + "')");
  }

private:
  std::string entry(double secondsAgo) const {
    const std::chrono::duration<double> now = loop.now().time_since_epoch();
    const auto content = TsafBuilder()
                             .object("ADCHistorySessionItem")
                             .object("ADCMediaItemTitleID")
                             .string("title", "Nightfall")
                             .string("artist", "A, B")
                             .number("duration", 240)
                             .string("titleID", identifier)
                             .number("startTime", now.count() - 978307200 - secondsAgo)
                             .bytes();
    std::string digits;
    for (const auto byte : content) {
      std::array<char, 3> pair{};
      std::snprintf(pair.data(), pair.size(), "%02x", byte);
      digits += pair.data();
    }
    return digits;
  }
};

TEST(DjayDetector, TakesTheFirstTrackThatCanStillPlay) {
  const std::tuple<const char*, std::vector<std::optional<double>>, bool> rows[] = {
      {"in the future", {-5}, false},
      {"the first has ended", {300, 30}, true},
      {"the first is empty", {std::nullopt, 30}, false},
  };
  for (const auto& [name, libraries, isFound] : rows) {
    DjayHome home;
    home.addLibrary(firstPath, libraries.front());
    if (libraries.size() > 1) home.addLibrary(secondPath, libraries.back());
    EXPECT_EQ(outcome(DjayDetector::current, home.platform), isFound ? found : noSession) << name;
  }
}

TEST(DjayDetector, NeedsNeitherTempoNorAnApplicationInTheList) {
  DjayHome home;
  home.addLibrary(secondPath, 30);
  const NowPlayingTrack whole{.title = "Nightfall",
                              .artist = "A, B",
                              .bpm = 124.5,
                              .source = "djay Pro",
                              .detection = "djay Pro play history"};
  EXPECT_EQ(DjayDetector::current(home.platform), whole);
  for (const auto& unknown :
       {std::string("x' OR 1 = 1 OR items.key = 'xxxx"), std::string(32, 'f')})
    EXPECT_EQ(DjayDetector::readBPM(home.environment.home / secondPath, unknown), 0);
  home.applications.running = {{"", "Djay.app", 3, true}};
  EXPECT_EQ(outcome(DjayDetector::current, home.platform), found) << "terminated, but still listed";
  home.applications.running.clear();
  EXPECT_EQ(outcome(DjayDetector::current, home.platform), noSession);
  home.processes.running = {"djayapp"};
  EXPECT_EQ(outcome(DjayDetector::current, home.platform), found);
}

} // namespace
