#include "app/AppDelegate.h"
#include "base/Json.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmor;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

const std::string configFile = "/home/dj/.config/Velmor/config.json";

class MainWindow : public testing::Test {
protected:
  MainWindow() {
    system.bundle.resources["Web/index.html"] = "/app/Web/index.html";
    system.bundle.resources["Web/velmor-bridge.js"] = "/app/Web/velmor-bridge.js";
    system.files.files["/app/Web/velmor-bridge.js"].bytes = "bridge()";
  }

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
  FakePageView& page() { return *native().page; }

  void command(const std::string& method) {
    page().handlers.at("velmor")("velmor", R"({"id":"1","method":")" + method + R"("})");
    system.loop.advance(Seconds{0.4});
  }

  FakePlatform system;
  FakeDesktop desktop;
  std::shared_ptr<AppDelegate> delegate =
      std::make_shared<AppDelegate>(system.platform, desktop.desktop);
};

} // namespace

TEST_F(MainWindow, IsBuiltOnceAndRaisedWithItsPage) {
  launch();
  ASSERT_EQ(desktop.windows.windows.size(), 1U);
  EXPECT_EQ(native().style, 0x8007U);
  EXPECT_EQ(native().behavior, 833U);
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().maximum, (Size{507, 651}));
  EXPECT_EQ(native().appearance, VelmorWindow::fullAppearance);
  EXPECT_THAT(native().isHidden,
              ElementsAre(Pair(WindowButton::Close, false), Pair(WindowButton::Miniaturize, false),
                          Pair(WindowButton::Zoom, true)));
  EXPECT_EQ(page().readAccess, "/app/Web");
  EXPECT_THAT(page().configuration.userScripts, ElementsAre("bridge()"));
  EXPECT_FALSE(page().configuration.drawsBackground);
  EXPECT_TRUE(page().configuration.mouseDownCanMoveWindow);
  EXPECT_FALSE(system.files.files.contains(configFile)) << "a launch alone saves nothing";
  native().orders.clear();
  page().delegate.lock()->didFinish();
  EXPECT_THAT(native().orders, ElementsAre("regardless", "key")) << "once the page is loaded";
}

TEST_F(MainWindow, ComesUpWhereItWasIfThatCanBeSeen) {
  desktop.windows.attached.push_back(
      {.frame = {{3000, -100}, {1920, 1080}}, .visibleFrame = {{3000, -60}, {1920, 1040}}});
  using Case = std::tuple<const char*, std::int64_t, std::int64_t, bool, bool>;
  const Case cases[] = {
      // Whether it is kept, and whether the centred place is saved.
      {"a place on the screen", 30, 40, true, false},
      {"left of the main screen", -200, 10, false, false},
      {"below the main screen", 10, -1, false, false},
      {"on a second screen", 4000, 0, true, false},
      {"on a screen that is gone", 5000, 10, false, true},
      {"100 points still on the screen", 1340, 10, false, true},
      {"120 points still on the screen", 1320, 10, true, false},
      {"119 points high below the panel", 0, 756, false, true},
  };
  for (const auto& [what, x, y, kept, written] : cases) {
    saveWindow({.x = x, .y = y, .width = 500, .height = 600});
    launch();
    const auto place = kept ? Point{double(x), double(y)} : Point{470, 150};
    EXPECT_EQ(native().frame(), (Rect{place, {500, 600}})) << what;
    EXPECT_EQ(savedWindow().x, written ? 470 : x) << what;
  }
}

TEST_F(MainWindow, HasNoLeastSizeAsASquare) {
  launch();
  EXPECT_EQ(native().minimum, (Size{376, 495}));
  command("WindowMinimise");
  EXPECT_EQ(native().minimum, Size{});
  command("RestoreWindow");
  EXPECT_EQ(native().minimum, (Size{376, 495}));
}

TEST_F(MainWindow, ClosesThoughItsPlaceCannotBeSaved) {
  launch();
  system.files.writeFailure = "No space left on device";
  native().close();
  EXPECT_FALSE(native().visible);
}

TEST_F(MainWindow, TellsThePageHowFarItsButtonsReach) {
  launch();
  const std::pair<std::optional<double>, std::string> cases[] = {
      {37.4, "48.0"}, {52.2, "59.0"}, {std::nullopt, "54.0"}};
  for (const auto& [rightEdge, inset] : cases) {
    native().minimiseButton.reset();
    if (rightEdge) native().minimiseButton = Rect{{*rightEdge - 14, 4}, {14, 14}};
    native().delegate.lock()->windowDidResize();
    EXPECT_EQ(page().scripts.back(),
              "document.documentElement.style.setProperty('--macos-titlebar-inset', '" + inset +
                  "px');");
  }
}

TEST_F(MainWindow, SaysWhyThePageCannotBeShown) {
  launch();
  page().delegate.lock()->didFail("The file does not exist.");
  EXPECT_EQ(native().message, "Velmor failed to load.\n\nThe file does not exist.");

  system.bundle.resources = {{"index.html", "/app/index.html"}};
  launch();
  EXPECT_EQ(page().page, "/app/index.html");

  system.bundle.resources.clear();
  launch();
  EXPECT_EQ(page().page, "");
  EXPECT_EQ(native().message, "Velmor failed to load.\n\n"
                              "Velmor could not find its UI files in the app bundle.");
  EXPECT_THAT(system.log.lines, Contains("Velmor: index.html missing from bundle"));
  EXPECT_THAT(system.log.lines, Contains("Velmor: bridge script missing from bundle").Times(2));
}

TEST_F(MainWindow, WithoutSettingsThereIsNoWindow) {
  system.files.writeFailure = "Permission denied";
  EXPECT_FALSE(delegate->applicationDidFinishLaunching());
  EXPECT_THAT(desktop.application.alerts, ElementsAre("Permission denied"));
  EXPECT_EQ(system.workspace.terminations, 1);
  EXPECT_THAT(desktop.windows.windows, IsEmpty());
}
