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
  EXPECT_EQ(native().frame(), normal);
  loop.advance(Seconds{0.14});
  EXPECT_THAT(native().orders, ElementsAre("deminiaturize", "style", "frame", "overlay"));
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().appearance.background.alpha, 0);
  EXPECT_FALSE(native().appearance.movableByBackground);
  EXPECT_TRUE(native().overlay->acceptsFirstMouse());
  EXPECT_FALSE(native().overlay->hitTest({82, 0}));
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
