#include "nowplaying/MixxxDetector.h"

#include "nowplaying/MixxxLibrary.h"
#include "tests/unit/DatabaseFile.h"
#include "tests/unit/Outcome.h"

#include <gtest/gtest.h>

#include <ctime>

namespace velmor {
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

/// Sets the local time zone for as long as it lives.
class TimeZone {
public:
  explicit TimeZone(const char* name) { use(name); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() { use(previous ? previous->c_str() : nullptr); }

private:
  static void use(const char* name) {
    if (name)
      setenv("TZ", name, 1);
    else
      unsetenv("TZ");
    tzset();
  }
  static std::optional<std::string> environmentValue() {
    const auto* const value = std::getenv("TZ");
    return value ? std::optional<std::string>(value) : std::nullopt;
  }
  std::optional<std::string> previous = environmentValue();
};

class MixxxHome : public HomeWithDatabases {
public:
  MixxxHome() { applications.running = {{"", "Mixxx.app", 5}}; }

  std::string current() {
    return outcome([&] { return MixxxDetector::current(platform); });
  }
};

TEST(MixxxDetector, ShowsWhatTheTitleSays) {
  const std::pair<const char*, std::string> rows[] = {
      {"Guns N' Roses - Kick At 128 | Mixxx", "Kick At 128 / Guns N' Roses / "},
      {"Plain Artist - Part One - Part Two (Extended Mix) | Mixxx",
       "Part One - Part Two (Extended Mix) / Plain Artist / "},
      {"Sigur Rós - Svefn-g-englar – Ænima 東京 | Mixxx",
       "Svefn-g-englar – Ænima 東京 / Sigur Rós / "},
      {"DJ A - DJ B - Left | Right | Mixxx", "DJ B - Left | Right / DJ A / "},
      {" \t A  -  B   | Mixxx\n", "B / A / "},
      {"Only A Title | Mixxx", noSession},
      {"- B | Mixxx", noSession},
      {"A -  | Mixxx", noSession},
      {"Mixxx", "Logged / A / Album"},
      {"   | Mixxx", "Logged / A / Album"},
      {"A - B | mixxx", "Logged / A / Album"},
      {"Load track to Deck 2", "Logged / A / Album"},
  };
  const TimeZone zone("UTC");
  MixxxHome home;
  home.addDatabase(plain, library(loggedTrack, "(1, '2026-11-15 23:58:00', 1)"));
  for (const auto& [title, track] : rows) {
    home.windows.windows = {{5, title}};
    EXPECT_EQ(home.current(), track) << title;
  }
}

TEST(MixxxDetector, PrefersTheAccessibleTitle) {
  MixxxHome home;
  home.windows.windows = {
      {4, "X - Other process | Mixxx"}, {5, "Mixxx"}, {5, "A - Listed | Mixxx"}};
  EXPECT_EQ(home.current(), "Listed / A / ");
  const auto dialog = std::make_shared<FakeAccessibility::Element>();
  dialog->attributes = {{"AXTitle", "Confirm Exit"},
                        {"AXTitleUIElement", AccessibilityElementPtr()}};
  const auto window = std::make_shared<FakeAccessibility::Element>();
  window->attributes = {{"AXTitle", ""}, {"AXTitleUIElement", "A - Accessible | Mixxx"}};
  const auto app = std::make_shared<FakeAccessibility::Element>();
  app->attributes["AXWindows"] = std::vector<AccessibilityElementPtr>{dialog, window};
  home.accessibility.applications[5] = app;
  EXPECT_EQ(home.current(), "Accessible / A / ");
  window->attributes["AXTitle"] = "B - Title first | Mixxx";
  EXPECT_EQ(home.current(), "Title first / B / ");
  window->attributes = {{"AXTitle", " | Mixxx"}};
  EXPECT_EQ(home.current(), "Listed / A / ");
  home.applications.running.clear();
  EXPECT_EQ(home.current(), noSession) << "not running";
}

TEST(MixxxDetector, CompletesTheTitleFromTheLibrary) {
  MixxxHome home;
  home.addDatabase(plain, library("(1, 'A', 'B', 'Plain', '', 0, '', 0, 0),"
                                  "(2, 'Only', 'Here', 'Plain', '', 0, '', 0, 0)"));
  home.addDatabase(sandboxed,
                   library("(1, ' A ', 'B', 'First', NULL, NULL, NULL, 0, NULL),"
                           "(2, 'A', 'B ', 'Newest', 'Techno', 93.3333333333333, 'F♯m', 0, 0),"
                           "(3, 'A', 'B', 'Deleted', '', 0, '', 0, 1),"
                           "(4, 'Guns N'' Roses', 'It''s', 'Quoted', '', 0, '', 0, 0),"
                           "(5, '', 'Nameless - Song', 'No artist', '', 0, '', 0, 0)"));
  const auto named = [&](const std::string& display) {
    home.windows.windows = {{5, display + " | Mixxx"}};
    return home.current();
  };
  EXPECT_EQ(named("A - B"), "B / A / Newest") << "the newest of the preferred library";
  EXPECT_EQ(named("Only - Here"), "Here / Only / Plain") << "the next library";
  EXPECT_EQ(named("a - B"), "B / a / ") << "matching is exact";
  EXPECT_EQ(named("Guns N' Roses - It's"), "It's / Guns N' Roses / Quoted");
  EXPECT_EQ(named("x' OR '1' = '1"), noSession) << "data, not a query";
  EXPECT_EQ(named("Only A Title"), noSession) << "the set log is not asked";
  const auto track = MixxxLibrary::track(home.platform, "A - B");
  EXPECT_EQ(track.genre + track.key, "TechnoF♯m");
  EXPECT_EQ(track.bpm, 93.3333333333333);
}

TEST(MixxxLibrary, ReadsTimesInTheLocalZone) {
  const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  const std::pair<const char*, std::optional<double>> rows[] = {
      {"2024-05-01 21:03:07", 1714590187},
      {"\t2024-05-01T21:03:07.123Z \n", 1714590187.123},
      {"2024-05-01T21:03:07Z", 1714590187},
      {"2024-01-01 00:00:00", 1704063600},
      {"1969-12-31 23:59:59", -3601},
      {"9999-12-31 23:59:59", 253402297199},
      {"2024-02-29 12:00:00", 1709204400},
      {"2023-02-29 12:00:00", std::nullopt},
      {"2024-03-31 02:30:00", std::nullopt}, // skipped by summer time
      {"2024-05-01 21:03:60", std::nullopt},
      {"2024-13-01 00:00:00", std::nullopt},
      {"2024-05-01T21:03", std::nullopt},
      {"2024-05-01T21:03:07", std::nullopt},
      {"2024-05-01 21:03:07Z", std::nullopt},
      {"2024-05-01T21:03:07.1234Z", std::nullopt},
      {"2024-05-01 21:03:07 and more", std::nullopt},
      {"-024-05-01 21:03:07", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [text, seconds] : rows) {
    const auto moment = MixxxLibrary::parseMixxxTimestamp(text);
    ASSERT_EQ(moment.has_value(), seconds.has_value()) << text;
    EXPECT_EQ(moment ? moment->time_since_epoch().count() : 0, seconds.value_or(0)) << text;
  }
}

TEST(MixxxLibrary, TakesTheSetLogOnlyWhileTheTrackCanPlay) {
  const TimeZone zone("UTC");
  const auto track = loggedTrack;
  const auto added = "(1, '2026-11-15 23:58:00', 1)"; // two minutes ago
  const std::tuple<const char*, const char*, bool> rows[] = {
      {track, added, true},
      {track, "(1, '2026-11-15T23:55:00.000Z', 1)", true},
      {track, "(1, '2026-11-15T23:54:59.999Z', 1)", false},
      {track, "(1, '2026-11-16 00:00:00', 1)", true},
      {track, "(1, '2026-11-16 00:00:01', 1)", false},
      {track, "(1, 'yesterday', 1)", false},
      {track, "(1, NULL, 1)", false},
      {track, "(1, '2026-11-15 23:58:00', 2)", false}, // an ordinary playlist
      {"(1, 'A', 'L', '', '', 0, '', 0, 0)", added, false},
      {"(1, 'A', 'L', '', '', 0, '', NULL, 0)", added, false},
      {"(1, ' ', 'L', '', '', 0, '', 300, 0)", added, false},
      {"(1, 'A', 'L', '', '', 0, '', 300, 1)", added, false},
  };
  for (const auto& [tracks, log, isFound] : rows) {
    MixxxHome home;
    home.windows.windows = {{5, "Mixxx"}};
    home.addDatabase(plain, library(tracks, log));
    home.addDatabase(sandboxed, "CREATE TABLE broken(x)");
    EXPECT_EQ(home.current(), isFound ? "Logged / A / Album" : noSession) << tracks << log;
  }
}

} // namespace
} // namespace velmor
