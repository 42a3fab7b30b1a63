#include "nowplaying/RekordboxDetector.h"

#include "nowplaying/NowPlayingError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/unit/Outcome.h"
#include "tests/unit/RekordboxScreen.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

const RekordboxScreen::Deck leftDeck{"Strobe", "deadmau5", "1:47", "-2:13", "128.00", "F♯m"};
const RekordboxScreen::Deck rightDeck{"Opus", "Eric Prydz", "12:75", "-6:01", "126.5", "8A"};

/// "Title, Artist, bpm, key, elapsed; " of every deck.
std::string decksOf(const std::vector<UIAText>& texts, const Rect& root) {
  std::string decks;
  for (const auto& deck : RekordboxDetector::parseDecks(texts, root)) {
    decks += deck.title + ", " + deck.artist + ", " + deck.bpm + ", " + deck.key + ", " +
             std::to_string(deck.elapsed) + "; ";
  }
  return decks;
}

TEST(RekordboxDetector, FindsBothDecksAmongDecoys) {
  EXPECT_EQ(decksOf(RekordboxScreen::texts(leftDeck, rightDeck), RekordboxScreen::window),
            "Strobe, deadmau5, 128.00, F♯m, 107; Opus, Eric Prydz, 126.5, 8A, 0; ");
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
      {{"25", {{300, 125}, {40, 14}}}, "Title, Artist, , 25, 0; "},
      {{"310", {{300, 125}, {40, 14}}}, "Title, Artist, , 310, 0; "},
      {{"125:00", {{300, 125}, {40, 14}}}, "Title, Artist, , , 7500; "},
      {{"1:05:30", {{300, 125}, {40, 14}}}, "Title, Artist, , 1:05:30, 0; "},
      {{"-1:05", {{300, 125}, {40, 14}}}, "Title, Artist, , -1:05, 0; "},
  };
  for (const auto& [text, decks] : rows) {
    EXPECT_EQ(
        decksOf({{"Title", {{100, 100}, {300, 20}}}, {"Artist", {{100, 125}, {200, 14}}}, text},
                {{0, 0}, {1000, 800}}),
        decks)
        << text.name;
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

  std::string read() {
    try {
      const auto decks = RekordboxDetector::readDecksViaAccessibility(system.platform);
      return std::to_string(decks.size()) + " decks";
    } catch (const NowPlayingError& error) {
      return error.errorDescription();
    }
  }

  FakePlatform system;
};

TEST_F(RekordboxWindow, IsReadOnceItShowsEverything) {
  const auto app = RekordboxScreen::application(RekordboxScreen::texts(leftDeck, rightDeck));
  show(app);
  EXPECT_EQ(read(), "2 decks");
  EXPECT_EQ(app->written.at("AXEnhancedUserInterface"), AccessibilityValue(true));
}

TEST_F(RekordboxWindow, MustBeThereAndLargeEnough) {
  const auto texts = RekordboxScreen::texts(leftDeck, rightDeck);
  show(RekordboxScreen::application(texts, {{0, 0}, {320, 600}}));
  EXPECT_EQ(read(), noSession);
  show(RekordboxScreen::application(texts, {{0, 0}, {600, 240}}));
  EXPECT_EQ(read(), noSession);
  show(RekordboxScreen::application({}));
  EXPECT_EQ(read(), noSession);
  show(std::make_shared<FakeAccessibility::Element>());
  EXPECT_EQ(read(), noSession);
  system.accessibility.applications[2]->errorCode = accessibilityError::apiDisabled;
  EXPECT_EQ(read(), NowPlayingError::accessibilityDenied("rekordbox").errorDescription());
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
