#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeMainLoop.h"
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

  /// Presses at the middle of the window, moves by the distance in one step, and releases.
  void drag(double x, double y) {
    const auto view = native().overlay;
    const auto frame = native().frame();
    desktop.windows.mouse = {frame.minX() + 41, frame.minY() + 41};
    view->mouseDown();
    desktop.windows.mouse = {frame.minX() + 41 + x, frame.minY() + 41 + y};
    if (x != 0 || y != 0) view->mouseDragged();
    view->mouseUp();
    loop.advance(Seconds{0.3});
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

TEST_F(CompactMode, MinimisingMakesASquareAtTheCornerOfTheWindow) {
  EXPECT_EQ(manager->savedBoundsIfCompact(), std::nullopt);
  native().level = 0;
  native().miniaturize();
  loop.advance(Seconds{0.1});
  EXPECT_THAT(modes, ElementsAre(true)) << "the page hears of it before the square is made";
  EXPECT_EQ(native().frame(), normal);
  loop.advance(Seconds{0.14});
  EXPECT_EQ(native().frame(), (Rect{{479, 100}, {82, 82}}));
  EXPECT_EQ(native().style, styleMask::borderless);
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().appearance.background.alpha, 0);
  EXPECT_FALSE(native().appearance.movableByBackground);
  EXPECT_THAT(native().orders, ElementsAre("deminiaturize", "style", "frame", "overlay"));
  EXPECT_TRUE(native().overlay->acceptsFirstMouse());
  EXPECT_FALSE(native().overlay->hitTest({82, 0}));
}

TEST_F(CompactMode, AClickBringsBackExactlyTheLastNormalFrame) {
  native().place = {{-20.5, 33.25}, {500, 600}};
  loop.advance(Seconds{0.1});
  minimise();
  EXPECT_EQ(manager->savedBoundsIfCompact(),
            (WindowSettings{.x = -20, .y = 33, .width = 500, .height = 600}));
  native().orders.clear();
  drag(0, 0);
  EXPECT_EQ(native().frame(), (Rect{{-20.5, 33.25}, {500, 600}}));
  EXPECT_THAT(modes, ElementsAre(true, false));
  EXPECT_EQ(native().style, VelmorWindow::fullStyle);
  EXPECT_EQ(native().appearance, VelmorWindow::fullAppearance);
  EXPECT_EQ(manager->savedBoundsIfCompact(), std::nullopt);
}

TEST_F(CompactMode, TheSquareComesBackWhereItWasLeft) {
  minimise();
  drag(20 - 479, 30 - 100);
  EXPECT_EQ(native().frame(), (Rect{{20, 30}, {82, 82}}));
  EXPECT_THAT(modes, ElementsAre(true)) << "a drag is not a click";
  drag(0, 0);
  minimise();
  EXPECT_EQ(native().frame(), (Rect{{20, 30}, {82, 82}}));

  // Moved by other means it is followed as well, but only while it is the square.
  native().place = {{50, 60}, {82, 82}};
  loop.advance(Seconds{0.1});
  native().place = {{70, 80}, {300, 82}};
  loop.advance(Seconds{0.1});
  manager->restore();
  manager->restore();
  loop.advance(Seconds{1});
  EXPECT_THAT(modes, ElementsAre(true, false, true, false)) << "restoring twice restores once";
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
  EXPECT_TRUE(manager->savedBoundsIfCompact());
  manager->restore();
  minimise();
  EXPECT_THAT(modes, ElementsAre(true, false)) << "nobody watches any more";
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
