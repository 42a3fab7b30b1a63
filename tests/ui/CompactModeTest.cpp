#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeMainLoop.h"
#include "ui/Reachable.h"
#include "ui/WindowModeManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmor;
using testing::ElementsAre;

namespace {

constexpr Rect normal{{100, 100}, {461, 592}};

class CompactMode : public testing::Test {
protected:
  CompactMode() {
    native().place = normal;
    window->makeKeyAndOrderFront();
    manager->start(window, [this](bool compact) { modes.push_back(compact); });
    loop.advance(Seconds{0.15});
    native().orders.clear();
  }

  FakeWindow& native() { return *desktop.windows.windows.front(); }

  void minimise() {
    native().miniaturize();
    loop.advance(Seconds{0.3});
  }

  /// Presses the mouse at a place, takes it along the way and lets go.
  void gesture(Point press, const std::vector<Point>& way = {}) {
    desktop.windows.mouse = press;
    native().overlay->mouseDown();
    for (const auto& place : way) {
      desktop.windows.mouse = place;
      native().overlay->mouseDragged();
    }
    native().overlay->mouseUp();
    loop.runPending();
  }

  FakeMainLoop loop;
  FakeDesktop desktop;
  std::shared_ptr<VelmorWindow> window =
      std::make_shared<VelmorWindow>(desktop.windows, Rect{}, VelmorWindow::fullStyle);
  std::shared_ptr<WindowModeManager> manager =
      std::make_shared<WindowModeManager>(loop, desktop.windows);
  std::vector<bool> modes;
};

} // namespace

TEST_F(CompactMode, ThePageHearsOfTheSquareBeforeItIsMade) {
  native().level = 0;
  native().miniaturize();
  loop.advance(Seconds{0.1});
  EXPECT_THAT(modes, ElementsAre(true));
  loop.advance(Seconds{0.08});
  EXPECT_EQ(native().frame(), normal) << "0.13 s after it was noticed";
  loop.advance(Seconds{0.02});
  EXPECT_THAT(native().orders, ElementsAre("deminiaturize", "style", "frame", "overlay"));
  EXPECT_EQ(native().frame(), (Rect{{479, 100}, {82, 82}}));
  EXPECT_EQ(native().style, 0U);
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().behavior, 833U);
  EXPECT_EQ(native().appearance, (WindowAppearance{true, true, false, {0, 0, 0, 0}, false}));
}

TEST_F(CompactMode, AClickOnTheSquareBringsTheWindowBack) {
  minimise();
  native().level = 0;
  native().orders.clear();
  native().isHidden.clear();
  gesture({490, 110});
  EXPECT_THAT(modes, ElementsAre(true, false));
  EXPECT_THAT(native().orders, ElementsAre("no overlay", "style", "frame"));
  EXPECT_EQ(native().frame(), normal);
  EXPECT_EQ(native().style, 0x8007U);
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().appearance, VelmorWindow::fullAppearance);
  EXPECT_EQ(native().isHidden.size(), 3U) << "it has the buttons that it ought to have";
}

TEST_F(CompactMode, TheSquareIsDraggedByWhereItWasPressed) {
  minimise();
  gesture({490, 110}, {{480, 100}, {31, 40}});
  EXPECT_EQ(native().frame(), (Rect{{20, 30}, {82, 82}}));
  EXPECT_THAT(modes, ElementsAre(true));
  gesture({31, 40});
  EXPECT_THAT(modes, ElementsAre(true, false)) << "a click after a drag is a click";
  minimise();
  EXPECT_EQ(native().frame(), (Rect{{20, 30}, {82, 82}}));
}

TEST_F(CompactMode, TheSquareTakesEveryPressInItAndNoOther) {
  minimise();
  const auto& overlay = *native().overlay;
  EXPECT_TRUE(overlay.acceptsFirstMouse());
  const std::pair<Point, bool> cases[] = {{{0, 0}, true},   {{81.9, 81.9}, true}, {{82, 5}, false},
                                          {{5, 82}, false}, {{-1, 5}, false},     {{5, -1}, false}};
  for (const auto& [point, taken] : cases)
    EXPECT_EQ(overlay.hitTest(point), taken) << point.x << ", " << point.y;
}

TEST_F(CompactMode, TheSquareIsFollowedWhateverMovesIt) {
  native().place = {{-20.5, 33.25}, {500, 600}};
  loop.advance(Seconds{0.1});
  minimise();
  EXPECT_EQ(manager->savedBoundsIfCompact(),
            (WindowSettings{.x = -20, .y = 33, .width = 500, .height = 600}));
  native().place = {{50, 60}, {82, 82}};
  loop.advance(Seconds{0.1});
  // Only while it is the square.
  native().place = {{70, 80}, {300, 82}};
  loop.advance(Seconds{0.1});
  manager->restore();
  manager->restore();
  loop.advance(Seconds{1});
  EXPECT_THAT(modes, ElementsAre(true, false)) << "restoring twice restores once";
  EXPECT_EQ(native().frame(), (Rect{{-20.5, 33.25}, {500, 600}}));
  EXPECT_EQ(manager->savedBoundsIfCompact(), std::nullopt);
  minimise();
  EXPECT_EQ(native().frame(), (Rect{{50, 60}, {82, 82}}));
}

TEST_F(CompactMode, RestoringBeforeTheSquareIsMadeShowsTheWindowAgain) {
  native().miniaturize();
  loop.advance(Seconds{0.1});
  manager->restore();
  loop.advance(Seconds{1});
  EXPECT_FALSE(native().miniaturized);
  EXPECT_EQ(native().frame(), normal);
  EXPECT_THAT(modes, ElementsAre(true, false));
}

TEST_F(CompactMode, StoppingLeavesTheWindowAndTheModeAsTheyAre) {
  minimise();
  manager->stop();
  loop.runPending();
  EXPECT_EQ(native().overlay, nullptr);
  EXPECT_EQ(native().style, 0U);
  EXPECT_TRUE(manager->savedBoundsIfCompact());
  manager->restore();
  minimise();
  EXPECT_THAT(modes, ElementsAre(true, false)) << "nobody watches any more";
}

TEST_F(CompactMode, AWindowThatWasNeverSeenHasAFrameToGoBackTo) {
  native().visible = false;
  native().place = {};
  const auto other = std::make_shared<WindowModeManager>(loop, desktop.windows);
  other->start(window, nullptr);
  native().miniaturize();
  loop.advance(Seconds{0.1});
  EXPECT_EQ(other->savedBoundsIfCompact(),
            (WindowSettings{.x = 0, .y = 0, .width = 461, .height = 592}));
}

TEST_F(CompactMode, NothingStaysWhereNoScreenShowsIt) {
  struct Case {
    Rect before, after;
  };
  const Case cases[] = {
      {{{1320, 755}, {461, 592}}, {{1320, 755}, {461, 592}}}, // 120 points of it show
      {{{1321, 100}, {461, 592}}, {{979, 100}, {461, 592}}},
      {{{-400, -600}, {461, 592}}, {{0, 0}, {461, 592}}},
      {{{9000, 100}, {461, 900}}, {{979, -25}, {461, 900}}}, // its top shows
      {{{1399, 834}, {82, 82}}, {{1399, 834}, {82, 82}}},
      {{{1400, 100}, {82, 82}}, {{1358, 100}, {82, 82}}},
  };
  for (const auto& [before, after] : cases) {
    native().place = before;
    desktop.windows.notify(DesktopNotification::ScreenParametersChanged);
    loop.advance(Seconds{1});
    EXPECT_EQ(native().frame(), after) << before.minX() << ", " << before.minY();
  }
  const std::vector<Screen> three{{{}, {{2000, 0}, {800, 600}}},
                                  {{}, {{0, 2000}, {800, 600}}},
                                  {{}, {{-3000, -1000}, {800, 600}}}};
  EXPECT_EQ(reachable({{0, 1200}, {82, 82}}, three), (Rect{{0, 2000}, {82, 82}}));
  EXPECT_EQ(reachable({{1500, 1000}, {82, 82}}, three), (Rect{{2000, 518}, {82, 82}}));
  EXPECT_EQ(reachable({{-1000, -900}, {82, 82}}, three), (Rect{{-2282, -900}, {82, 82}}));
  native().place = normal;
  loop.advance(Seconds{0.2});
  minimise();
  desktop.windows.attached.front().visibleFrame = {{2000, 0}, {800, 600}};
  manager->restore();
  loop.runPending();
  EXPECT_EQ(native().frame(), (Rect{{2000, 8}, {461, 592}}));
  minimise();
  EXPECT_EQ(native().frame().size, (Size{82, 82}));
  EXPECT_GE(native().frame().minX(), 2000) << "where it was left, no screen is";
}

TEST_F(CompactMode, AWindowThatIsGoneIsLeftAlone) {
  native().miniaturize();
  loop.advance(Seconds{0.1});
  window.reset();
  desktop.windows.windows.clear();
  manager->restore();
  loop.advance(Seconds{1});
  EXPECT_THAT(modes, ElementsAre(true));
}
