#include "nowplaying/RekordboxDetector.h"

#include "nowplaying/NowPlayingError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/unit/RekordboxScreen.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

const RekordboxScreen::Deck leftDeck{"Strobe", "deadmau5", "1:47", "-2:13", "128.00", "F♯m"};
const RekordboxScreen::Deck rightDeck{"Opus", "Eric Prydz", "12:75", "-6:01", "126.5", "8A"};

TEST(RekordboxDetector, FindsBothDecksAmongDecoys) {
  const auto decks = RekordboxDetector::parseDecks(RekordboxScreen::texts(leftDeck, rightDeck),
                                                   RekordboxScreen::window);
  ASSERT_EQ(decks.size(), 2U);
  EXPECT_EQ(decks[0].title + "/" + decks[0].artist, "Strobe/deadmau5");
  EXPECT_EQ(decks[0].bpm + "/" + decks[0].key, "128.00/F♯m");
  EXPECT_EQ(decks[0].elapsed, 107);
  EXPECT_EQ(decks[0].top, 90);
  EXPECT_EQ(decks[1].title + "/" + decks[1].artist, "Opus/Eric Prydz");
  EXPECT_EQ(decks[1].bpm + "/" + decks[1].key, "126.5/8A");
  EXPECT_EQ(decks[1].elapsed, 0) << "75 seconds are no time";
}

/// A title and its artist in a window of 1000 x 800 at the origin, and one more text.
std::vector<RekordboxDeck> decksWith(const UIAText& text) {
  return RekordboxDetector::parseDecks(
      {{"Title", {{100, 100}, {300, 20}}}, {"Artist", {{100, 125}, {200, 14}}}, text},
      {{0, 0}, {1000, 800}});
}

TEST(RekordboxDetector, JudgesTextsByTheirPlaces) {
  const struct {
    UIAText text;
    std::size_t decks;
    std::string artist;
    std::string bpm;
    std::int64_t elapsed;
  } rows[] = {
      // Titles at the edge of what counts; without an artist below they are no deck.
      {{"Far title", {{600, 440}, {250, 15}}}, 1, "Artist", "", 0},
      {{"Twin", {{132, 108}, {250, 15}}}, 2, "Twin", "", 0},
      {{"Low", {{132, 108}, {250, 14}}}, 1, "Low", "", 0},
      {{"Narrow", {{132, 108}, {249, 15}}}, 1, "Narrow", "", 0},
      // Artists: the uppermost below the title, and of equals the first.
      {{"Later", {{100, 125}, {200, 14}}}, 1, "Artist", "", 0},
      {{"Aside", {{133, 110}, {200, 14}}}, 1, "Artist", "", 0},
      {{"Big", {{100, 110}, {200, 25}}}, 1, "Artist", "", 0},
      // Details: right of most of the artist, on its row, within the deck.
      {{"128", {{231, 133}, {40, 14}}}, 1, "Artist", "128", 0},
      {{"128", {{230, 125}, {40, 14}}}, 1, "Artist", "", 0},
      {{"128", {{580, 117}, {40, 14}}}, 1, "Artist", "128", 0},
      {{"128", {{581, 125}, {40, 14}}}, 1, "Artist", "", 0},
      {{"128", {{300, 134}, {40, 14}}}, 1, "Artist", "", 0},
      {{"25", {{300, 125}, {40, 14}}}, 1, "Artist", "", 0},
      {{"310", {{300, 125}, {40, 14}}}, 1, "Artist", "", 0},
      {{"125:00", {{300, 125}, {40, 14}}}, 1, "Artist", "", 7500},
      {{"1:05:30", {{300, 125}, {40, 14}}}, 1, "Artist", "", 0},
      {{"-1:05", {{300, 125}, {40, 14}}}, 1, "Artist", "", 0},
      {{"1234:00", {{300, 125}, {40, 14}}}, 1, "Artist", "", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text.name);
    const auto decks = decksWith(row.text);
    ASSERT_EQ(decks.size(), row.decks);
    EXPECT_EQ(decks[0].artist, row.artist);
    EXPECT_EQ(decks[0].bpm, row.bpm);
    EXPECT_EQ(decks[0].elapsed, row.elapsed);
  }
}

TEST(RekordboxDetector, TitlesStandInTheUpperPartOfTheWindow) {
  for (const double height : {200, 199}) {
    const auto decks = RekordboxDetector::parseDecks(
        {{"Title", {{0, 120}, {300, 20}}}, {"Artist", {{0, 145}, {200, 14}}}},
        {{0, 10}, {1000, height}});
    EXPECT_EQ(decks.size(), height == 200 ? 1U : 0U);
  }
}

TEST(RekordboxDetector, ReadsClocks) {
  const std::pair<const char*, std::int64_t> rows[] = {
      {"1:05", 65}, {"125:00", 7500}, {"12:75", 0}, {"1:05:30", 0}, {"-2:13", 0},
      {":59", 0},   {"x:10", 0},      {"1:y", 0},   {"", 0},        {"9223372036854775807:59", 0}};
  for (const auto& [text, seconds] : rows) {
    EXPECT_EQ(RekordboxDetector::parseClock(text), seconds) << text;
  }
}

class RekordboxWindow : public testing::Test {
protected:
  RekordboxWindow() {
    system.applications.running = {{"com.pioneerdj.rekordboxdj", "rekordbox", 1, true},
                                   {"x.rekordboxdj.y", "", 2}};
  }

  void show(const std::shared_ptr<FakeAccessibility::Element>& app) {
    system.accessibility.applications[2] = app;
  }

  NowPlayingError::Case failure() {
    try {
      (void)RekordboxDetector::readDecksViaAccessibility(system.platform);
    } catch (const NowPlayingError& error) {
      return error.errorCase();
    }
    ADD_FAILURE() << "decks were found";
    return {};
  }

  FakePlatform system;
};

TEST_F(RekordboxWindow, IsReadOnceItShowsEverything) {
  const auto app = RekordboxScreen::application(RekordboxScreen::texts(leftDeck, rightDeck));
  show(app);
  EXPECT_EQ(RekordboxDetector::readDecksViaAccessibility(system.platform).size(), 2U);
  EXPECT_EQ(app->written.at("AXEnhancedUserInterface"), AccessibilityValue(true));
}

TEST_F(RekordboxWindow, MustBeThereAndLargeEnough) {
  const auto texts = RekordboxScreen::texts(leftDeck, rightDeck);
  show(RekordboxScreen::application(texts, {{0, 0}, {320, 600}}));
  EXPECT_EQ(failure(), NowPlayingError::Case::noActiveSession);
  show(RekordboxScreen::application(texts, {{0, 0}, {600, 240}}));
  EXPECT_EQ(failure(), NowPlayingError::Case::noActiveSession);
  show(RekordboxScreen::application({}));
  EXPECT_EQ(failure(), NowPlayingError::Case::noActiveSession);
  show(std::make_shared<FakeAccessibility::Element>());
  EXPECT_EQ(failure(), NowPlayingError::Case::noActiveSession);
  system.accessibility.applications[2]->errorCode = accessibilityError::apiDisabled;
  EXPECT_EQ(failure(), NowPlayingError::Case::accessibilityDenied);
}

TEST_F(RekordboxWindow, IsTheFirstOfTheLargestWithoutAFocusedOne) {
  std::vector<AccessibilityElementPtr> windows;
  for (const double width : {10, 50, 50, 20}) {
    windows.push_back(RekordboxScreen::element({"", {{0, 0}, {width, 10}}}));
  }
  const auto app = std::make_shared<FakeAccessibility::Element>();
  app->attributes["AXWindows"] = windows;
  EXPECT_EQ(RekordboxDetector::rekordboxWindowElement(app), windows[1]);
  app->attributes["AXWindows"] = std::vector<AccessibilityElementPtr>{};
  EXPECT_EQ(RekordboxDetector::rekordboxWindowElement(app), nullptr);
}

TEST(RekordboxDetector, WalksVisibleTextsToADepthOf32ParentsFirst) {
  auto element = RekordboxScreen::element({"40", {{0, 0}, {1, 1}}});
  for (int level = 39; level >= 0; --level) {
    auto parent = RekordboxScreen::element({std::to_string(level), {{0, 0}, {1, 1}}});
    parent->attributes["AXChildren"] = std::vector<AccessibilityElementPtr>{element};
    element = parent;
  }
  element->attributes["AXTitle"] = std::string(" \t");
  std::vector<UIAText> texts;
  RekordboxDetector::walkUIAText(*element, 0, texts);
  ASSERT_EQ(texts.size(), 33U);
  EXPECT_EQ(texts.front().name, "0") << "a blank title gives way to the value";
  EXPECT_EQ(texts.back().name, "32");
  element->attributes["AXTitle"] = std::string("titled");
  element->attributes["AXSize"] = Size{0, 5};
  element->attributes.erase("AXChildren");
  EXPECT_EQ(RekordboxDetector::elementName(*element), "titled");
  texts.clear();
  RekordboxDetector::walkUIAText(*element, 0, texts);
  EXPECT_TRUE(texts.empty()) << "nothing is visible without a size";
}

} // namespace
} // namespace velmor
