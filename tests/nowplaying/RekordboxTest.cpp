#include "base/Text.h"
#include "nowplaying/NowPlayingDetector.h"
#include "nowplaying/readers/RekordboxDetector.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/nowplaying/RekordboxScreen.h"
#include "tests/support/Outcome.h"

#include <gtest/gtest.h>

using namespace velmor;

namespace {

const RekordboxScreen::Deck strobe{"Strobe", "deadmau5", "1:47", "128.00", "F♯m"};

/// "Title, Artist, bpm, key, elapsed; " of every deck.
std::string decksOf(const std::vector<UIAText>& texts, const Rect& root) {
  std::string decks;
  for (const auto& deck : RekordboxDetector::parseDecks(texts, root)) {
    decks += deck.title + ", " + deck.artist + ", " + deck.bpm + ", " + deck.key + ", " +
             std::to_string(deck.elapsed) + "; ";
  }
  return decks;
}

TEST(RekordboxDetector, JudgesTextsByTheirPlaces) {
  const std::pair<UIAText, const char*> rows[] = {
      // Titles at the edge of what counts; without an artist below they are no deck.
      {{"Far", {{600, 440}, {250, 15}}}, "Title, Artist, , , 0; "},
      {{"Twin", {{132, 108}, {250, 15}}}, "Title, Twin, , , 0; Twin, Artist, , , 0; "},
      {{"Low", {{132, 108}, {250, 14}}}, "Title, Low, , , 0; "},
      {{"Narrow", {{132, 108}, {249, 15}}}, "Title, Narrow, , , 0; "},
      // Artists: the uppermost below the title, and of equals the first.
      {{"Later", {{100, 125}, {200, 14}}}, "Title, Artist, , , 0; "},
      {{"Aside", {{133, 110}, {200, 14}}}, "Title, Artist, , , 0; "},
      {{"Big", {{100, 110}, {200, 25}}}, "Title, Artist, , , 0; "},
      // Details: right of most of the artist, on its row, within the deck.
      {{"128", {{231, 133}, {40, 14}}}, "Title, Artist, 128, , 0; "},
      {{"128", {{230, 125}, {40, 14}}}, "Title, Artist, , , 0; "},
      {{"128", {{580, 117}, {40, 14}}}, "Title, Artist, 128, , 0; "},
      {{"128", {{581, 125}, {40, 14}}}, "Title, Artist, , , 0; "},
      {{"128", {{300, 134}, {40, 14}}}, "Title, Artist, , , 0; "},
      {{"128", {{91, 125}, {40, 14}}}, "Title, Artist, , , 0; "},
      {{"30", {{300, 125}, {40, 14}}}, "Title, Artist, 30, , 0; "},
      {{"29.9", {{300, 125}, {40, 14}}}, "Title, Artist, , 29.9, 0; "},
      {{"300", {{300, 125}, {40, 14}}}, "Title, Artist, 300, , 0; "},
      {{"300.1", {{300, 125}, {40, 14}}}, "Title, Artist, , 300.1, 0; "},
      {{"1:05:30", {{300, 125}, {40, 14}}}, "Title, Artist, , 1:05:30, 0; "},
  };
  const Rect root{{0, 0}, {1000, 800}};
  const std::vector<UIAText> pair{{"Title", {{100, 100}, {300, 20}}},
                                  {"Artist", {{100, 125}, {200, 14}}}};
  for (const auto& [text, decks] : rows)
    EXPECT_EQ(decksOf({pair[0], pair[1], text}, root), decks) << text.name;
  for (const auto& [x, decks] : {std::pair{91, "Title, A, , , 0; "}, {107, "Title, A, 128, , 0; "}})
    EXPECT_EQ(
        decksOf({pair[0], {"A", {{70, 125}, {20, 14}}}, {"128", {{1.0 * x, 125}, {40, 14}}}}, root),
        decks)
        << x;
  EXPECT_EQ(RekordboxDetector::parseDecks(pair, root).at(0).top, 100) << "decides between decks";
  const std::vector<UIAText> low{{"Title", {{0, 120}, {300, 20}}},
                                 {"Artist", {{0, 145}, {200, 14}}}};
  EXPECT_EQ(decksOf(low, {{0, 10}, {1000, 200}}), "Title, Artist, , , 0; ");
  EXPECT_EQ(decksOf(low, {{0, 10}, {1000, 199}}), "") << "in the lower part of the window";
}

TEST(RekordboxDetector, ReadsClocks) {
  const std::pair<const char*, std::int64_t> rows[] = {
      {"1:05", 65},   {"125:00", 7500}, {"12:75", 0},
      {"1:05:30", 0}, {"-2:13", 0},     {":59", 0},
      {"x:10", 0},    {"1:y", 0},       {"9223372036854775807:59", 0}};
  for (const auto& [text, seconds] : rows)
    EXPECT_EQ(RekordboxDetector::parseClock(text), seconds) << text;
}

class RekordboxWindow : public testing::Test {
protected:
  RekordboxWindow() {
    system.applications.running = {{"com.pioneerdj.rekordboxdj", "rekordbox", 1, true},
                                   {"x.rekordboxdj.y", "", 2}};
  }

  /// The titles of the decks that the application shows, or why there are none.
  std::string read(const std::shared_ptr<FakeAccessibility::Element>& app) {
    system.accessibility.applications[2] = app;
    try {
      std::string titles;
      for (const auto& deck : RekordboxDetector::readDecksViaAccessibility(system.platform))
        titles += deck.title + " ";
      return titles;
    } catch (const NowPlayingError& error) {
      return error.errorDescription();
    }
  }

  FakePlatform system;
};

TEST_F(RekordboxWindow, MustBeThereAndLargeEnough) {
  const auto texts = RekordboxScreen::texts(strobe, strobe);
  const auto app = RekordboxScreen::application(texts, {{}, {321, 241}});
  EXPECT_EQ(read(RekordboxScreen::application(texts)), "Strobe Strobe ");
  EXPECT_NE(read(app), noSession) << "large enough, though no deck is that narrow";
  EXPECT_EQ(app->written.at("AXEnhancedUserInterface"), AccessibilityValue(true));
  for (const Size size : {Size{320, 600}, Size{600, 240}})
    EXPECT_EQ(read(RekordboxScreen::application(texts, {{}, size})), noSession);
  EXPECT_EQ(read(RekordboxScreen::application({})), noSession);
  const auto bare = std::make_shared<FakeAccessibility::Element>();
  EXPECT_EQ(read(bare), noSession);
  bare->errorCode = accessibilityError::apiDisabled;
  EXPECT_EQ(read(bare), NowPlayingError::accessibilityDenied("rekordbox").errorDescription());
}

TEST_F(RekordboxWindow, IsTheFirstOfTheLargestWithoutAFocusedOne) {
  std::vector<AccessibilityElementPtr> windows;
  for (const double width : {1000, 1400, 1401, 1401, 1300}) {
    const std::vector<UIAText> texts{{std::to_string(windows.size()), {{0, 0}, {400, 20}}},
                                     {"Artist", {{0, 25}, {200, 14}}}};
    windows.push_back(RekordboxScreen::windowOf(texts, {{0, 0}, {width, 800}}));
  }
  const auto app = std::make_shared<FakeAccessibility::Element>();
  app->attributes["AXWindows"] = windows;
  EXPECT_EQ(read(app), "2 ");
}

TEST_F(RekordboxWindow, IsWalkedToADepthOf32ParentsFirst) {
  // Each text holds the next, which stands where its artist would.
  std::vector<std::shared_ptr<FakeAccessibility::Element>> chain;
  std::string titles;
  for (int level = 0; level <= 33; ++level) {
    const auto name = std::to_string(level);
    const auto next = RekordboxScreen::element({name, {{0, 20.0 * level}, {400, 20}}});
    if (level > 0) {
      chain.back()->attributes["AXChildren"] = std::vector<AccessibilityElementPtr>{next};
    }
    chain.push_back(next);
    if (level < 32) titles += name + " ";
  }
  chain[0]->attributes["AXTitle"] = std::string(" \t");
  chain[0]->attributes["AXSize"] = Size{1000, 2000};
  const auto app = RekordboxScreen::focusing(chain[0]);
  EXPECT_EQ(read(app), titles) << "a blank title gives way to the value";
  for (const Size nothing : {Size{0, 20}, Size{400, 0}}) {
    chain[2]->attributes["AXSize"] = nothing;
    EXPECT_TRUE(read(app).starts_with("0 3 4 ")) << "nothing is visible without a size";
  }
  chain[2]->attributes.erase("AXSize");
  EXPECT_TRUE(read(app).starts_with("0 3 4 "));
}

/// Decks such as "a:220 b:65:100", each a title, a clock and, if it matters, a place. A title "_"
/// is blank.
std::vector<RekordboxDeck> decksFrom(const char* texts) {
  std::vector<RekordboxDeck> decks;
  for (const auto text : text::split(texts, ' ')) {
    const auto parts = text::split(text, ':');
    auto& deck = decks.emplace_back();
    if (parts[0] != "_") deck.title = parts[0];
    deck.elapsed = std::stoll(std::string(parts[1]));
    if (parts.size() > 2) deck.top = std::stod(std::string(parts[2]));
  }
  return decks;
}

NowPlayingDetector::Elapsed clocks(const std::vector<RekordboxDeck>& decks) {
  NowPlayingDetector::Elapsed result;
  for (const auto& each : decks)
    result.emplace(each.fingerprint(), each.elapsed);
  return result;
}

TEST(RekordboxPolls, SelectTheDeckThatPlaysForTheShortestTime) {
  const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
      // The decks before and now, and the one that is chosen.
      {"first poll", "", "a:220 b:65", "b"},
      {"first poll, not started", "", "a:0 _:9", ""},
      {"both moved", "a:1 b:90", "a:200 b:91", "b"},
      {"one moved", "a:199 b:65", "A:200 b:65", "A"},
      {"moved back", "a:199 b:65", "a:3 b:65", "a"},
      {"a tie", "a:1 b:1", "a:2:300 b:2:100", "b"},
      {"a full tie", "a:1 b:1", "a:2:5 b:2:5", "a"},
      {"new deck", "a:1", "a:1 new:9", ""},
      {"twins, paused, beside one that plays", "a:5 a:20 b:90", "a:5 a:20 b:91", "b"},
      {"twins, one plays", "a:19 a:20", "a:20 a:20", "a"},
      {"a paused track loaded twice", "a:20 b:90", "a:0 a:20 b:91", "b"},
      {"a playing track loaded twice", "a:20", "a:0:1 A:21:2", "A"},
      {"one of two twins replaced", "a:5 a:20", "c:0 a:20", ""},
  };
  for (const auto& [name, previous, decks, expected] : rows) {
    const auto now = decksFrom(decks);
    const auto chosen = NowPlayingDetector::selectRekordboxDeck(now, clocks(decksFrom(previous)));
    EXPECT_EQ(chosen ? chosen->title : "", expected) << name;
  }
}

class RekordboxSession : public testing::Test {
protected:
  RekordboxSession() {
    system.applications.running = {{"com.pioneerdj.rekordboxdj", "rekordbox", 2}};
  }

  /// One poll with these clocks; the title, or "" when nothing plays.
  std::string poll(const std::string& left, const std::string& right,
                   const std::string& rightTitle = "Right") {
    show(left, right, rightTitle);
    return current();
  }

  void show(const std::string& left, const std::string& right,
            const std::string& rightTitle = "Right") {
    system.accessibility.applications[2] = RekordboxScreen::application(RekordboxScreen::texts(
        {"Left", "A", left, "128.00", "8A"}, {rightTitle, "A", right, "abc", "Am"}));
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
  EXPECT_EQ(detector.current().bpm, 0) << "again, and its tempo is no number";
  EXPECT_EQ(current(), noSession);
  EXPECT_EQ(current(), noSession);
  EXPECT_EQ(poll("1:08", "3:42"), "Left / A / ");
  EXPECT_EQ(detector.current().bpm, 128) << "the patience begins anew";
}

TEST_F(RekordboxSession, ForgetsADeckThatIsNoLongerShown) {
  EXPECT_EQ(poll("0:00", "3:40"), "Right / A / ");
  EXPECT_EQ(poll("0:00", "0:00", "Next"), noSession);
}

TEST_F(RekordboxSession, TakesTheSameTrackOnBothDecks) {
  EXPECT_EQ(poll("0:10", "0:20", "LEFT"), "Left / A / ");
  EXPECT_EQ(poll("0:12", "0:22", "LEFT"), "Left / A / ");
  EXPECT_EQ(poll("0:12", "0:22", "LEFT"), "Left / A / ") << "found again by either spelling";
}

TEST_F(RekordboxSession, RemembersItsClocksUntilRekordboxHasQuit) {
  EXPECT_EQ(poll("1:05", "3:40"), "Left / A / ");
  system.accessibility.applications.clear();
  EXPECT_EQ(current(), noSession) << "a read that fails";
  EXPECT_EQ(poll("1:05", "3:42"), "Right / A / ");
  const auto application = std::exchange(system.applications.running, {});
  EXPECT_EQ(current(), noSession);
  system.applications.running = application;
  EXPECT_EQ(poll("1:05", "3:44"), "Left / A / ") << "a first poll again";
}

TEST_F(RekordboxSession, DoesNotCompareClocksOfLongAgo) {
  EXPECT_EQ(poll("1:05", "3:40"), "Left / A / ");
  system.loop.advance(Seconds{9});
  EXPECT_EQ(poll("1:05", "3:44"), "Right / A / ") << "a poll that was late";
  system.loop.advance(Seconds{11});
  EXPECT_EQ(poll("1:07", "3:55"), "Right / A / ") << "the left one has moved since, but then?";
  EXPECT_EQ(poll("1:07", "3:57"), "Right / A / ");
  system.loop.advance(Seconds{11});
  EXPECT_EQ(poll("1:17", "3:57"), "Right / A / ");
  EXPECT_EQ(poll("1:19", "3:57"), "Left / A / ");
  system.loop.advance(Seconds{200});
  EXPECT_EQ(poll("1:19", "0:44"), "Right / A / ") << "a first poll again";
  system.loop.setNow(system.loop.now() - std::chrono::hours(1));
  EXPECT_EQ(poll("1:05", "3:46"), "Left / A / ") << "somebody has set the clock";
}

TEST_F(RekordboxSession, LooksTwiceWhenNobodyHasLookedForAWhile) {
  EXPECT_FALSE(detector.noteClocks()) << "its window shows nothing yet";
  show("1:05", "3:40");
  EXPECT_TRUE(detector.noteClocks());
  EXPECT_FALSE(detector.noteClocks()) << "known now";
  EXPECT_EQ(current(), noSession) << "nothing moves";
  EXPECT_EQ(poll("1:05", "3:42"), "Right / A / ");
  system.loop.advance(Seconds{3600});
  EXPECT_TRUE(detector.noteClocks());
  EXPECT_EQ(current(), noSession) << "what played an hour ago is paused";
  system.loop.advance(Seconds{3600});
  system.applications.running.push_back({"org.mixxx.mixxx", "", 5});
  system.windows.windows = {{5, "A - From Mixxx | Mixxx"}};
  EXPECT_FALSE(detector.noteClocks()) << "Mixxx goes first";
}

} // namespace
