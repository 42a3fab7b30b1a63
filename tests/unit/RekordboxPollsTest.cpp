#include "nowplaying/NowPlayingDetector.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/unit/Outcome.h"
#include "tests/unit/RekordboxScreen.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

RekordboxDeck deck(const std::string& title, std::int64_t elapsed, double top = 0) {
  RekordboxDeck result;
  result.title = title;
  result.elapsed = elapsed;
  result.top = top;
  return result;
}

NowPlayingDetector::Elapsed clocks(const std::vector<RekordboxDeck>& decks) {
  NowPlayingDetector::Elapsed result;
  for (const auto& each : decks)
    result[each.fingerprint()] = each.elapsed;
  return result;
}

TEST(RekordboxPolls, SelectTheDeckThatPlaysForTheShortestTime) {
  const struct {
    const char* name;
    std::vector<RekordboxDeck> previous;
    std::vector<RekordboxDeck> decks;
    std::string chosen;
  } rows[] = {
      {"first poll", {}, {deck("a", 220), deck("b", 65)}, "b"},
      {"first poll, not started", {}, {deck("a", 0), deck("b", 65)}, "b"},
      {"first poll, nothing started", {}, {deck("a", 0)}, ""},
      {"both moved", {deck("a", 1), deck("b", 90)}, {deck("a", 200), deck("b", 91)}, "b"},
      {"one moved", {deck("a", 199), deck("b", 65)}, {deck("A", 200), deck("b", 65)}, "A"},
      {"moved back", {deck("a", 199), deck("b", 65)}, {deck("a", 3), deck("b", 65)}, "a"},
      {"a tie", {deck("a", 1), deck("b", 1)}, {deck("a", 2, 300), deck("b", 2, 100)}, "b"},
      {"a full tie", {deck("a", 1), deck("b", 1)}, {deck("a", 2, 5), deck("b", 2, 5)}, "a"},
      {"new deck", {deck("a", 1)}, {deck("a", 1), deck("new", 9)}, ""},
      {"nameless deck", {}, {deck("", 9)}, ""},
  };
  for (const auto& row : rows) {
    const auto chosen = NowPlayingDetector::selectRekordboxDeck(row.decks, clocks(row.previous));
    EXPECT_EQ(chosen ? chosen->title : "", row.chosen) << row.name;
  }
}

TEST(RekordboxPolls, FindADeckByItsFingerprint) {
  const std::vector<RekordboxDeck> decks{deck("Éa", 1), deck("b", 2), deck("B", 3)};
  const auto found = [&](const std::string& fingerprint) {
    const auto result = NowPlayingDetector::rekordboxDeckByFingerprint(decks, fingerprint);
    return result ? result->elapsed : 0;
  };
  EXPECT_EQ(found(deck("éA", 0).fingerprint()), 1);
  EXPECT_EQ(found(deck("B", 0).fingerprint()), 2);
  EXPECT_EQ(found("b"), 0);
  EXPECT_EQ(found(""), 0);
}

class RekordboxSession : public testing::Test {
protected:
  RekordboxSession() {
    system.applications.running = {{"com.pioneerdj.rekordboxdj", "rekordbox", 2}};
  }

  /// One poll with these clocks; the title, or "" when nothing plays.
  std::string poll(const std::string& left, const std::string& right,
                   const std::string& rightTitle = "Right") {
    system.accessibility.applications[2] = RekordboxScreen::application(
        RekordboxScreen::texts({"Left", "A", left, "-9:00", "128.00", "8A"},
                               {rightTitle, "A", right, "-9:00", "abc", "Am"}));
    return current();
  }

  std::string current() {
    return outcome([&] { return detector.current(); });
  }

  FakePlatform system;
  NowPlayingDetector detector{system.platform};
};

TEST_F(RekordboxSession, KeepsTheDeckForOnePollWithoutAMovingClock) {
  EXPECT_EQ(poll("1:05", "3:40"), "Left / A / ");
  EXPECT_EQ(poll("1:07", "3:40"), "Left / A / ");
  EXPECT_EQ(poll("1:07", "3:42"), "Right / A / ");
  EXPECT_EQ(poll("1:07", "3:42"), "Right / A / ") << "one look without movement may be chance";
  EXPECT_EQ(poll("1:07", "3:42"), noSession);
  EXPECT_EQ(poll("1:07", "3:42"), noSession);
  EXPECT_EQ(poll("1:08", "3:42"), "Left / A / ");
  EXPECT_EQ(poll("1:08", "3:42"), "Left / A / ");
}

TEST_F(RekordboxSession, ReportsTempoAndKeyAsShown) {
  (void)poll("1:05", "0:00");
  const NowPlayingTrack left{"Left", "A",  "",          "",
                             128,    "8A", "rekordbox", "rekordbox deck metadata"};
  EXPECT_EQ(detector.current(), left);
  (void)poll("1:05", "0:02");
  EXPECT_EQ(detector.current().bpm, 0) << "a tempo that is no number";
}

TEST_F(RekordboxSession, ForgetsADeckThatIsNoLongerShown) {
  EXPECT_EQ(poll("0:00", "3:40"), "Right / A / ");
  EXPECT_EQ(poll("0:00", "0:00", "Next"), noSession);
}

TEST_F(RekordboxSession, TakesTheSameTrackOnBothDecks) {
  EXPECT_EQ(poll("0:10", "0:20", "LEFT"), "Left / A / ");
  EXPECT_EQ(poll("0:12", "0:22", "LEFT"), "Left / A / ");
}

TEST_F(RekordboxSession, RemembersItsClocksOverAFailedRead) {
  EXPECT_EQ(poll("1:05", "3:40"), "Left / A / ");
  system.accessibility.applications.clear();
  EXPECT_EQ(current(), noSession);
  EXPECT_EQ(poll("1:05", "3:42"), "Right / A / ");
}

TEST_F(RekordboxSession, StartsAfreshWhenRekordboxHasQuit) {
  EXPECT_EQ(poll("1:05", "3:40"), "Left / A / ");
  // It is there at the first look and gone at the second.
  const auto application = system.applications.running;
  system.applications.running.clear();
  system.processes.handler = [&](const ChildProcess& child) {
    return ChildResult{
        child.arguments.back() == "rekordbox" && system.processes.asked("rekordbox") == 1 ? 0 : 1,
        "", ""};
  };
  EXPECT_EQ(current(), noSession);
  EXPECT_EQ(system.processes.asked("rekordbox"), 2);
  system.applications.running = application;
  EXPECT_EQ(poll("1:05", "3:40"), "Left / A / ") << "a first poll again";
}

} // namespace
} // namespace velmor
