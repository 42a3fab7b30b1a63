#include "nowplaying/SeratoDetector.h"

#include "tests/unit/DatabaseFile.h"
#include "tests/unit/Outcome.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

constexpr auto firstPath = "Music/_Serato_/Library/master.sqlite";
constexpr auto secondPath = "Library/Application Support/Serato/Library/master.sqlite";

/// Rows of (id, artist, name, album, genre, bpm, key, start_time, end_time, played, app_name).
std::string history(const std::string& entries) {
  return "PRAGMA journal_mode = WAL;"
         "CREATE TABLE history_entry(id INTEGER PRIMARY KEY, session_id, artist, name, album,"
         " genre, bpm REAL, key TEXT, start_time, end_time, played, deck TEXT, app_name);"
         "INSERT INTO history_entry(id, artist, name, album, genre, bpm, key, start_time,"
         " end_time, played, app_name) VALUES" +
         entries;
}

std::string current(const Platform& platform) {
  return outcome([&] { return SeratoDetector::current(platform); });
}

TEST(SeratoDetector, ReportsTheNewestOpenEntry) {
  const std::pair<const char*, std::string> rows[] = {
      {"(1,'A','Early','','',0,'',100,-1,1,''), (2,'A','Late','','',0,'',200,-1,1,'')",
       "Late / A / "},
      {"(1,'A','First','','',0,'',100,-1,1,''), (2,'A','Second','','',0,'',100,-1,1,'')",
       "Second / A / "},
      {"(1,'A','Open','','',0,'',100,-1,1,''), (2,'A','Ended','','',0,'',200,260,1,'')",
       "Open / A / "},
      {"(1,'A','Loaded','','',0,'',100,-1,0,'')", noSession},
      {"(1,'  ','Blank','','',0,'',100,-1,1,''), (2,'A',' ','','',0,'',100,-1,1,'')", noSession},
      {"(1,'A',char(9)||'Tab'||char(0)||char(0),'','',0,'',100,-1,1,'')", "Tab / A / "},
      {"(1,'A',char(10),'','',0,'',100,-1,1,'')", noSession},
  };
  for (const auto& [entries, track] : rows) {
    HomeWithDatabases home;
    home.processes.running = {"serato dj"};
    home.addDatabase(firstPath, history(entries));
    EXPECT_EQ(current(home.platform), track) << entries;
  }
}

TEST(SeratoDetector, TakesTheRowAsItIs) {
  HomeWithDatabases home;
  home.processes.running = {"serato dj pro"};
  home.addDatabase(secondPath,
                   history("(1,'A','T','Al','G',124.5,'F#m',100,-1,1,'Serato DJ Pro')"));
  const NowPlayingTrack full{
      "T", "A", "Al", "G", 124.5, "F#m", "Serato DJ Pro", "Serato performance history"};
  EXPECT_EQ(SeratoDetector::current(home.platform), full) << "from the second place";
  home.addDatabase(firstPath, history("(1,'A','T',NULL,NULL,NULL,NULL,100,-1,1,NULL)"));
  const NowPlayingTrack sparse{"T", "A", "", "", 0, "", "", "Serato performance history"};
  EXPECT_EQ(SeratoDetector::current(home.platform), sparse);
  home.processes.running.clear();
  EXPECT_EQ(current(home.platform), noSession);
}

} // namespace
} // namespace velmor
