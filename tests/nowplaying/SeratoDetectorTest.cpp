#include "nowplaying/readers/SeratoDetector.h"

#include "tests/support/DatabaseFile.h"
#include "tests/support/Outcome.h"

#include <gtest/gtest.h>

using namespace velmor;

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

TEST(SeratoDetector, ReportsTheNewestOpenEntry) {
  const std::pair<const char*, std::string> rows[] = {
      {"(1,'A','First','','',0,'',100,-1,1,''), (2,'A','Second','','',0,'',100,-1,1,'')",
       "Second / A / "},
      {"(1,'A','Late','Al','',0,'',200,-1,1,''), (2,'A','Early','','',0,'',100,-1,1,'')",
       "Late / A / Al"},
      {"(1,'A','Ended','','',0,'',300,360,1,''), (2,'A','Loaded','','',0,'',400,-1,0,'')",
       noSession},
      {"(1,' ','Blank','','',0,'',100,-1,1,''), (2,'A',char(10),'','',0,'',100,-1,1,'')",
       noSession},
  };
  for (const auto& [entries, track] : rows) {
    HomeWithDatabases home;
    home.addDatabase(secondPath, history(entries));
    home.processes.running = {"serato dj"};
    EXPECT_EQ(outcome(SeratoDetector::current, home.platform), track) << entries;
    home.addDatabase(firstPath, history("(1,'A','First','Al','House',124.5,'8A',9,-1,1,'Lite')"));
    const NowPlayingTrack preferred{.title = "First",
                                    .artist = "A",
                                    .album = "Al",
                                    .genre = "House",
                                    .bpm = 124.5,
                                    .key = "8A",
                                    .source = "Lite",
                                    .detection = "Serato performance history"};
    EXPECT_EQ(SeratoDetector::current(home.platform), preferred);
  }
}

} // namespace
