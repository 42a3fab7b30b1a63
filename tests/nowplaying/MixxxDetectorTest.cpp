#include "nowplaying/readers/MixxxDetector.h"

#include "base/Text.h"
#include "nowplaying/readers/MixxxLibrary.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/Outcome.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace velmor;

namespace {

constexpr auto sandboxed = "Library/Containers/org.mixxx.mixxx/Data/Library/Application Support/"
                           "Mixxx/mixxxdb.sqlite";
constexpr auto plain = ".mixxx/mixxxdb.sqlite";
/// Five minutes long.
constexpr auto loggedTrack = "(1, 'A', 'Logged', 'Album', '', 120, 'Am', 300, 0)";

/// A library of (id, artist, title, album, genre, bpm, key, duration, mixxx_deleted) and a set log
/// of (track, time added, hidden), a second list of ordinary tracks beside it.
std::string library(const std::string& tracks, const std::string& log = "") {
  std::string statements =
      "CREATE TABLE library(id INTEGER PRIMARY KEY, artist, title, album, genre, bpm FLOAT, key,"
      " duration FLOAT, mixxx_deleted);"
      "CREATE TABLE Playlists(id INTEGER PRIMARY KEY, hidden);"
      "CREATE TABLE PlaylistTracks(track_id, pl_datetime_added, playlist_id);"
      "INSERT INTO Playlists VALUES(1, 2), (2, 0);"
      "INSERT INTO library VALUES" +
      tracks + ";";
  if (!log.empty()) statements += "INSERT INTO PlaylistTracks VALUES" + log + ";";
  return statements;
}

void useTimeZone(const char* name) {
  setenv("TZ", name, 1);
  tzset();
}

class MixxxHome : public HomeWithDatabases {
public:
  MixxxHome() { applications.running = {{"", "Mixxx.app", 5}}; }
};

TEST(MixxxDetector, ShowsWhatTheTitleSays) {
  const std::pair<const char*, std::string> rows[] = {
      {"Plain Artist - Part One - Part Two (Extended Mix) | Mixxx",
       "Part One - Part Two (Extended Mix) / Plain Artist / "},
      {" \t A  -  B | C   | Mixxx\n", "B | C / A / "},
      {"Only A Title | Mixxx", noSession},
      {"- B | Mixxx", noSession},
      {"A -  | Mixxx", noSession},
      {"Mixxx", "Logged / A / Album"},
      {"   | Mixxx", "Logged / A / Album"},
      {"A - B | mixxx", "Logged / A / Album"},
  };
  useTimeZone("UTC");
  MixxxHome home;
  home.addDatabase(plain, library(loggedTrack, "(1, '2026-11-15 23:58:00', 1)"));
  for (const auto& [title, track] : rows) {
    home.windows.windows = {{4, "X - Other process | Mixxx"}, {5, title}};
    EXPECT_EQ(outcome(MixxxDetector::current, home.platform), track) << title;
  }
}

TEST(MixxxDetector, OfSeveralInstancesTakesTheOneInFrontThatShowsATrack) {
  // The one in front first, as the list of windows gives them.
  const std::pair<std::vector<WindowDescription>, std::string> rows[] = {
      {{{6, "C - Front | Mixxx"}, {5, "A - Behind | Mixxx"}}, "Front / C / "},
      {{{6, "Mixxx"}, {5, "A - Behind | Mixxx"}}, "Behind / A / "},
      {{{5, "A - Only | Mixxx"}}, "Only / A / "},
  };
  MixxxHome home;
  home.applications.running.push_back({"org.mixxx.mixxx", "", 6});
  for (const auto& [windows, track] : rows) {
    home.windows.windows = windows;
    EXPECT_EQ(outcome(MixxxDetector::current, home.platform), track);
  }
  const auto window = std::make_shared<FakeAccessibility::Element>();
  window->attributes["AXTitle"] = std::string("A - Described | Mixxx");
  const auto described = std::make_shared<FakeAccessibility::Element>();
  described->attributes["AXWindows"] = std::vector<AccessibilityElementPtr>{window};
  home.accessibility.applications[5] = described;
  home.windows.windows = rows[0].first;
  EXPECT_EQ(outcome(MixxxDetector::current, home.platform), "Front / C / ")
      << "though the other one can be read better";
  home.windows.windows = rows[2].first;
  for (const AccessibilityValue& useless : {AccessibilityValue(true), {std::string("Mixxx")}}) {
    window->attributes["AXTitle"] = useless;
    EXPECT_EQ(outcome(MixxxDetector::current, home.platform), "Only / A / ");
  }
}

TEST(MixxxDetector, KeepsABoundedPartOfATitle) {
  MixxxHome home;
  home.windows.windows = {{5, "A - " + std::string(10'000'000, 'x') + " | Mixxx"}};
  EXPECT_EQ(MixxxDetector::current(home.platform).title.size(), text::mostCharacters - 4);
}

TEST(MixxxDetector, CompletesTheTitleFromTheLibrary) {
  MixxxHome home;
  home.addDatabase(plain, library("(1, 'A', 'B', 'Plain', '', 0, '', 0, 0),"
                                  "(2, 'Only', 'Here', 'Plain', '', 0, '', 0, 0)"));
  home.addDatabase(sandboxed,
                   library("(1, ' A ', 'B', 'First', NULL, NULL, NULL, 0, NULL),"
                           "(2, 'A', 'B ', 'Newest', 'Techno', 93.3333333333333, 'F♯m', 0, 0),"
                           "(3, 'A', 'B', 'Deleted', '', 0, '', 0, 1),"
                           "(4, 'Guns N'' Roses', 'It''s', 'Quoted', '', 0, '', 0, 0)"));
  const std::pair<const char*, std::string> rows[] = {
      {"A - B", "B / A / Newest"},   {"Only - Here", "Here / Only / Plain"},
      {"a - B", "B / a / "},         {"Guns N' Roses - It's", "It's / Guns N' Roses / Quoted"},
      {"x' OR '1' = '1", noSession},
  };
  for (const auto& [display, track] : rows) {
    home.windows.windows = {{5, display + std::string(" | Mixxx")}};
    EXPECT_EQ(outcome(MixxxDetector::current, home.platform), track);
  }
  const NowPlayingTrack whole{.title = "B",
                              .artist = "A",
                              .album = "Newest",
                              .genre = "Techno",
                              .bpm = 93.3333333333333,
                              .key = "F♯m",
                              .source = "Mixxx",
                              .detection = "Mixxx current-track metadata"};
  EXPECT_EQ(MixxxLibrary::track(home.platform, "A - B"), whole);
}

TEST(MixxxLibrary, ReadsTimesInTheLocalZone) {
  useTimeZone("CET-1CEST,M3.5.0,M10.5.0/3");
  const std::pair<const char*, std::optional<double>> rows[] = {
      {"2024-05-01 21:03:07", 1714590187},
      {"\t2024-05-01T21:03:07.123Z \n", 1714590187.123},
      {"2024-05-01T21:03:07Z", 1714590187},
      {"2024-01-01 00:00:00", 1704063600},
      {"1969-12-31 23:59:59", -3601},
      {"2024-03-31 02:30:00", std::nullopt}, // skipped by summer time
      {"2024-05-01 21:03:60", std::nullopt},
      {"2024-05-01T21:03", std::nullopt},
      {"2024-05-01 21:03:07Z", std::nullopt},
      {"2024-05-01 21:03:07 and more", std::nullopt},
  };
  for (const auto& [text, seconds] : rows) {
    const auto moment = MixxxLibrary::parseMixxxTimestamp(text);
    ASSERT_EQ(moment.has_value(), seconds.has_value()) << text;
    EXPECT_EQ(moment ? moment->time_since_epoch().count() : 0, seconds.value_or(0)) << text;
  }
}

TEST(MixxxLibrary, TakesTheSetLogOnlyWhileTheTrackCanPlay) {
  useTimeZone("UTC");
  const auto added = "(1, '2026-11-15 23:58:00', 1)"; // two minutes ago
  const std::tuple<const char*, const char*, bool> rows[] = {
      {loggedTrack, "(1, '2026-11-15T23:55:00.000Z', 1)", true},
      {loggedTrack, "(1, '2026-11-15T23:54:59.999Z', 1)", false},
      {loggedTrack, "(1, '2026-11-16 00:00:00', 1)", true},
      {loggedTrack, "(1, '2026-11-16 00:00:01', 1)", false},
      {loggedTrack, "(1, '2026-11-15 23:58:00', 2)", false}, // an ordinary playlist
      {"(1, 'A', 'L', '', '', 0, '', 0, 0)", added, false},
      {"(1, ' ', 'L', '', '', 0, '', 300, 0)", added, false},
  };
  for (const auto& [tracks, log, isFound] : rows) {
    MixxxHome home;
    home.windows.windows = {{5, "Mixxx"}};
    home.addDatabase(plain, library(tracks, log));
    home.addDatabase(sandboxed, "CREATE TABLE broken(x)");
    EXPECT_EQ(outcome(MixxxDetector::current, home.platform),
              isFound ? "Logged / A / Album" : noSession)
        << tracks << log;
  }
}

} // namespace
