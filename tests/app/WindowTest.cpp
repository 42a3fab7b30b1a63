#include "app/AppDelegate.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velmor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string configFile = "/home/dj/.config/Velmor/config.json";

/// The whole application with a window, on a fake system.
class WindowTest : public testing::Test {
protected:
  void saveWindow(const WindowSettings& window) {
    nlohmann::json config = AppConfig{};
    config["version"] = 8;
    config["window"] = window;
    system.files.files[configFile].bytes = config.dump();
  }

  WindowSettings savedWindow() {
    return nlohmann::json::parse(system.files.files.at(configFile).bytes)["window"];
  }

  /// Starts the program, or starts it again.
  void launch() {
    desktop.windows.windows.clear();
    system.workspace.terminations = 0;
    EXPECT_TRUE(delegate->applicationDidFinishLaunching());
    system.loop.advance(Seconds{0.15});
  }

  FakeWindow& native() { return *desktop.windows.windows.front(); }

  void command(const std::string& method) {
    native().page->handlers.at("velmor")("velmor", R"({"id":"1","method":")" + method + R"("})");
    system.loop.advance(Seconds{0.4});
  }

  FakePlatform system;
  FakeDesktop desktop;
  std::shared_ptr<AppDelegate> delegate =
      std::make_shared<AppDelegate>(system.platform, desktop.desktop);
};

} // namespace

TEST_F(WindowTest, ComesUpWhereItWasIfThatCanBeSeen) {
  desktop.windows.attached.push_back(
      {.frame = {{3000, -100}, {1920, 1080}}, .visibleFrame = {{3000, -60}, {1920, 1040}}});
  using Case = std::tuple<const char*, std::int64_t, std::int64_t, bool, bool>;
  const Case cases[] = {
      // Whether it is kept, and whether the centred place is saved.
      {"a place on the screen", 30, 40, true, false},
      {"the screen's very corner", 0, 0, true, false},
      {"left of the main screen", -200, 10, false, false},
      {"below the main screen", 10, -1, false, false},
      {"on a second screen", 4000, 0, true, false},
      {"on a screen that is gone", 5000, 10, false, true},
      {"100 points still on the screen", 1340, 10, false, true},
      {"120 points still on the screen", 1320, 10, true, false},
      {"119 points high below the panel", 0, 756, false, true},
      {"120 points high below the panel", 0, 755, true, false},
  };
  for (const auto& [what, x, y, kept, written] : cases) {
    saveWindow({.x = x, .y = y, .width = 500, .height = 600});
    launch();
    const auto place = kept ? Point{double(x), double(y)} : Point{470, 150};
    EXPECT_EQ(native().frame(), (Rect{place, {500, 600}})) << what;
    EXPECT_EQ(savedWindow().x, written ? 470 : x) << what;
    EXPECT_TRUE(native().visible);
  }
}

TEST_F(WindowTest, ShowsItsTopWhereItIsHigherThanTheScreenAndKeepsItsSize) {
  desktop.windows.attached = {
      {.frame = {{0, 0}, {800, 600}}, .visibleFrame = {{0, 20}, {800, 580}}}};
  for (const std::int64_t x : {100, -1}) {
    saveWindow({.x = x, .y = 50, .width = 500, .height = 651});
    launch();
    EXPECT_EQ(native().frame().maxY(), 600);
    native().close();
    EXPECT_EQ(savedWindow().height, 651);
  }
}

TEST_F(WindowTest, ALaunchRaisesItAndSavesNothing) {
  launch();
  EXPECT_FALSE(system.files.files.contains(configFile));
  EXPECT_GT(desktop.application.activations, 0);
  EXPECT_THAT(native().orders, ElementsAre("key", "regardless", "key", "key", "regardless"));
  ASSERT_EQ(desktop.application.menu.size(), 3U);
  desktop.application.menu.front().action();
  EXPECT_EQ(native().page->scripts.back(), "window.__velmorEmit(\"velmor:show-about\", null);");
  desktop.application.menu.back().action();
  EXPECT_EQ(system.workspace.terminations, 1);
}

TEST_F(WindowTest, HasNoLeastSizeAsASquare) {
  launch();
  EXPECT_EQ(native().minimum, (Size{376, 495}));
  command("WindowMinimise");
  EXPECT_EQ(native().minimum, Size{});
  EXPECT_EQ(native().page->scripts.back(), "window.__velmorEmit(\"velmor:compact-mode\", true);");
  command("RestoreWindow");
  EXPECT_EQ(native().minimum, (Size{376, 495}));
  EXPECT_EQ(native().page->scripts.back(), "window.__velmorEmit(\"velmor:compact-mode\", false);");
  EXPECT_EQ(native().orders.back(), "frame") << "it is brought to the front before";
}

TEST_F(WindowTest, ItsPlaceIsSavedWhenItCloses) {
  launch();
  native().place = {{33.7, 44}, {461, 592}};
  system.loop.advance(Seconds{0.1});
  native().close();
  const WindowSettings place{.x = 33, .y = 44, .width = 461, .height = 592};
  EXPECT_EQ(savedWindow(), place);

  launch();
  command("WindowMinimise");
  ASSERT_EQ(native().frame().size, (Size{82, 82}));
  native().close();
  EXPECT_EQ(savedWindow(), place) << "the full window's place, not the square's";
  system.loop.runPending();
  EXPECT_EQ(native().overlay, nullptr) << "nobody watches a window that is gone";

  launch();
  system.files.writeFailure = "No space left on device";
  native().close();
  EXPECT_FALSE(native().visible);
  EXPECT_THAT(system.log.lines, testing::Contains("Velmor: the window's place was not saved: "
                                                  "No space left on device"));
}

TEST_F(WindowTest, IsBroughtToTheFrontWhateverStateItIsIn) {
  launch();
  const auto bring = [this] {
    native().orders.clear();
    desktop.application.activations = 0;
    delegate->applicationShouldHandleReopen();
  };
  bring();
  EXPECT_THAT(native().orders, ElementsAre("key"));
  native().visible = false;
  native().level = 0;
  bring();
  EXPECT_THAT(native().orders, ElementsAre("regardless", "key"));
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(desktop.application.activations, 1);
}

TEST_F(WindowTest, AnotherWindowWithItsTitleStandsInForIt) {
  const auto other = std::make_shared<FakeWindow>(Rect{}, VelmorWindow::fullStyle);
  const auto store = std::make_shared<ConfigStore>(system.platform);
  AppController controller{system.platform, store, desktop.desktop};
  controller.bringToFront();
  controller.minimize();
  EXPECT_EQ(desktop.application.activations, 0);
  desktop.windows.windows.push_back(other);
  other->name = "Velmor";
  controller.bringToFront();
  EXPECT_THAT(other->orders, ElementsAre("regardless", "key"));
  controller.bringToFront();
  EXPECT_THAT(other->orders, ElementsAre("regardless", "key", "key"));
  EXPECT_EQ(desktop.application.activations, 2);
  controller.minimize();
  EXPECT_TRUE(other->miniaturized);
}

TEST_F(WindowTest, WithoutSettingsThereIsNone) {
  system.files.writeFailure = "Permission denied";
  EXPECT_FALSE(delegate->applicationDidFinishLaunching());
  EXPECT_THAT(desktop.application.alerts, ElementsAre("Permission denied"));
  EXPECT_EQ(system.workspace.terminations, 1);
  EXPECT_THAT(desktop.windows.windows, IsEmpty());
}
