#include "nowplaying/DjayDetector.h"

#include "tests/unit/DatabaseFile.h"
#include "tests/unit/Outcome.h"
#include "tests/unit/TsafBuilder.h"

#include <gtest/gtest.h>

#include <optional>

namespace velmor {
namespace {

constexpr auto firstPath = "Music/djay/djay Media Library.djayMediaLibrary/MediaLibrary.db";
constexpr auto secondPath = "Music/djay/djay Media Library/MediaLibrary.db";
const std::string found = "Nightfall / A, B / ";
const std::string identifier = "00112233445566778899aabbccddeeff";

class DjayHome : public HomeWithDatabases {
public:
  DjayHome() { applications.running = {{"com.algoriddim.djay-mac", "djay Pro", 3}}; }

  /// A library whose newest track began that long ago; its tempo is analysed as 124.5.
  void addLibrary(const char* path, std::optional<double> secondsAgo) {
    std::string statements = "CREATE TABLE database2(collection, key, data BLOB);"
                             "CREATE TABLE secondaryIndex_mediaItemAnalyzedDataIndex(bpm REAL);"
                             "INSERT INTO secondaryIndex_mediaItemAnalyzedDataIndex VALUES(124.5);"
                             "INSERT INTO database2 VALUES('mediaItemAnalyzedData', '" +
                             identifier + "', x'00'), ('historySessionItems', 'old', x'54534146')";
    if (secondsAgo)
      statements += ", ('historySessionItems', 'new', x'" + entry(*secondsAgo) + "')";
    else
      statements += "; DELETE FROM database2 WHERE collection = 'historySessionItems'";
    addDatabase(path, statements);
  }

  std::string current() {
    return outcome([&] { return DjayDetector::current(platform); });
  }

private:
  std::string entry(double secondsAgo) const {
    const std::chrono::duration<double> now = clock().now().time_since_epoch();
    const auto content = TsafBuilder()
                             .object("ADCHistorySessionItem")
                             .object("ADCMediaItemTitleID")
                             .string("title", "Nightfall")
                             .string("artist", "A, B")
                             .number("duration", 240)
                             .string("titleID", identifier)
                             .number("startTime", now.count() - 978307200 - secondsAgo)
                             .content();
    std::string digits;
    for (const char character : content) {
      std::array<char, 3> pair{};
      std::snprintf(pair.data(), pair.size(), "%02x", static_cast<unsigned char>(character));
      digits += pair.data();
    }
    return digits;
  }

  const Clock& clock() const { return loop; }
};

TEST(DjayDetector, ReportsTheNewestTrackWhileItCanPlay) {
  DjayHome home;
  home.addLibrary(firstPath, 30);
  const NowPlayingTrack expected{"Nightfall", "A, B", "",         "",
                                 124.5,       "",     "djay Pro", "djay Pro play history"};
  EXPECT_EQ(DjayDetector::current(home.platform), expected);
}

TEST(DjayDetector, LooksAtBothLibraries) {
  const struct {
    const char* name;
    std::optional<std::optional<double>> first;
    std::optional<std::optional<double>> second;
    bool isFound;
  } rows[] = {
      {"ended", 300, std::nullopt, false},
      {"in the future", -5, std::nullopt, false},
      {"only the second", std::nullopt, 30, true},
      {"the first has ended", 300, 30, true},
      {"the first is empty", std::optional<double>(), 30, false},
      {"none", std::nullopt, std::nullopt, false},
  };
  for (const auto& row : rows) {
    DjayHome home;
    if (row.first) home.addLibrary(firstPath, *row.first);
    if (row.second) home.addLibrary(secondPath, *row.second);
    EXPECT_EQ(home.current(), row.isFound ? found : noSession) << row.name;
  }
}

TEST(DjayDetector, NeedsNeitherTempoNorAnApplicationInTheList) {
  DjayHome home;
  home.addLibrary(firstPath, 30);
  const auto path = home.environment.home / firstPath;
  EXPECT_EQ(DjayDetector::readBPM(path, identifier), 124.5);
  EXPECT_EQ(DjayDetector::readBPM(path, ""), 0);
  EXPECT_EQ(DjayDetector::readBPM(path, "x' OR 1 = 1 OR items.key = 'xxxx"), 0);
  EXPECT_EQ(DjayDetector::readBPM(path, std::string(32, 'f')), 0);
  home.applications.running = {{"", "Djay.app", 3, true}};
  EXPECT_EQ(home.current(), found) << "terminated, but still listed";
  home.applications.running.clear();
  EXPECT_EQ(home.current(), noSession);
  home.processes.running = {"djayapp"};
  EXPECT_EQ(home.current(), found);
}

} // namespace
} // namespace velmor
