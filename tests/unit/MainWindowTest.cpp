#include "app/AppDelegate.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velmor;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

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

  void launch() {
    EXPECT_TRUE(delegate->applicationDidFinishLaunching());
    system.loop.advance(Seconds{0.15});
  }

  FakeWindow& native() { return *desktop.windows.windows.front(); }
  FakePageView& page() { return *native().page; }
  std::shared_ptr<NavigationDelegate> navigation() { return page().delegate.lock(); }

  void minimise() {
    native().miniaturize();
    system.loop.advance(Seconds{0.3});
  }

  void command(const std::string& method) {
    page().handlers.at("velmor")("velmor", R"({"id":"1","method":")" + method + R"("})");
    system.loop.advance(Seconds{0.15});
  }

  FakePlatform system;
  FakeDesktop desktop;
  std::shared_ptr<AppDelegate> delegate =
      std::make_shared<AppDelegate>(system.platform, desktop.desktop);
};

} // namespace

TEST_F(MainWindow, IsBuiltOnceAndFilledWithThePage) {
  launch();
  ASSERT_EQ(desktop.windows.windows.size(), 1U);
  EXPECT_EQ(native().name, "Velmor");
  EXPECT_EQ(native().style, 0x8007U);
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().behavior, 833U);
  EXPECT_EQ(native().minimum, (Size{376, 495}));
  EXPECT_EQ(native().maximum, (Size{507, 651}));
  EXPECT_EQ(native().frame(), (Rect{{466.5, 124.5}, {507, 651}}));
  EXPECT_EQ(native().appearance, VelmorWindow::fullAppearance);
  EXPECT_THAT(native().shownButtons, ElementsAre(WindowButton::Close, WindowButton::Miniaturize));
  EXPECT_TRUE(native().visible);
  EXPECT_EQ(page().page, "/app/Web/index.html");
  EXPECT_EQ(page().readAccess, "/app/Web");
  EXPECT_THAT(page().configuration.userScripts, ElementsAre("bridge()"));
  EXPECT_TRUE(page().configuration.developerExtras);
  EXPECT_FALSE(page().configuration.drawsBackground);
  EXPECT_TRUE(page().configuration.mouseDownCanMoveWindow);
  EXPECT_FALSE(system.files.files.contains(configFile)) << "a launch alone saves nothing";
}

TEST_F(MainWindow, ComesUpWhereItWasIfThatCanBeSeen) {
  struct Case {
    const char* what;
    WindowSettings saved;
    Rect frame;
    bool written;
  };
  const Rect centred{{489.5, 154}, {461, 592}};
  const Case cases[] = {
      {"a saved frame",
       {.x = 30, .y = 40, .width = 500, .height = 600},
       {{30, 40}, {500, 600}},
       false},
      {"no place yet", {.x = -1, .y = -1}, centred, false},
      {"left of the main screen", {.x = -200, .y = 10}, centred, false},
      {"below the main screen", {.x = 10, .y = -1}, centred, false},
      {"on a screen that is gone", {.x = 3000, .y = 10}, centred, true},
      {"100 points still on the screen", {.x = 1340, .y = 10}, centred, true},
      {"120 points still on the screen", {.x = 1320, .y = 10}, {{1320, 10}, {461, 592}}, false},
      {"119 points high below the panel", {.x = 0, .y = 756}, centred, true},
  };
  for (const auto& [what, saved, frame, written] : cases) {
    desktop.windows.windows.clear();
    saveWindow(saved);
    launch();
    EXPECT_EQ(native().frame(), frame) << what;
    const WindowSettings expected{.x = 489, .y = 154, .width = 461, .height = 592};
    EXPECT_EQ(savedWindow(), written ? expected : saved) << what;
  }
  desktop.windows.windows.clear();
  desktop.windows.attached.clear();
  saveWindow({.x = 30, .y = 40});
  launch();
  EXPECT_EQ(native().frame(), centred) << "no screens at all";
}

TEST_F(MainWindow, ASecondScreenCountsAsWell) {
  desktop.windows.attached.push_back(
      {.frame = {{1440, -100}, {1920, 1080}}, .visibleFrame = {{1440, -60}, {1920, 1040}}});
  saveWindow({.x = 2000, .y = 0});
  launch();
  EXPECT_EQ(native().frame(), (Rect{{2000, 0}, {461, 592}}));
}

TEST_F(MainWindow, SavesTheNormalFrameHoweverItCloses) {
  saveWindow({.x = 30, .y = 40});
  launch();
  native().place = {{50.9, 60.2}, {461, 592}};
  system.loop.advance(Seconds{0.1});
  delegate->applicationShouldClose();
  EXPECT_EQ(savedWindow(), (WindowSettings{.x = 50, .y = 60, .width = 461, .height = 592}));

  // The program starts again.
  desktop.windows.windows.clear();
  system.workspace.terminations = 0;
  launch();
  minimise();
  EXPECT_EQ(native().minimum, Size{}) << "the square may be smaller than the window";
  EXPECT_THAT(page().scripts, Contains(R"(window.__velmorEmit("velmor:compact-mode", true);)"));
  native().place = {{7, 7}, {82, 82}};
  native().close();
  EXPECT_EQ(savedWindow(), (WindowSettings{.x = 50, .y = 60, .width = 461, .height = 592}));
}

TEST_F(MainWindow, AFailedSaveDoesNotKeepItOpen) {
  launch();
  system.files.writeFailure = "No space left on device";
  native().close();
  EXPECT_FALSE(native().visible);
}

TEST_F(MainWindow, CommandsMinimiseRestoreAndRaiseIt) {
  launch();
  command("WindowMinimise");
  system.loop.advance(Seconds{0.3});
  EXPECT_EQ(native().frame().size, (Size{82, 82}));
  const int activations = desktop.application.activations;
  command("RestoreWindow");
  EXPECT_EQ(native().frame(), (Rect{{466.5, 124.5}, {507, 651}}));
  EXPECT_EQ(native().minimum, (Size{376, 495}));
  EXPECT_THAT(page().scripts, Contains(R"(window.__velmorEmit("velmor:compact-mode", false);)"));
  EXPECT_EQ(desktop.application.activations, activations + 1);

  native().level = 0;
  native().visible = false;
  delegate->applicationShouldHandleReopen();
  EXPECT_TRUE(native().visible);
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().orders.back(), "key");
}

TEST_F(MainWindow, CommandsWithoutAWindowDoNothing) {
  AppController controller(system.platform, std::make_shared<ConfigStore>(system.platform),
                           desktop.desktop);
  controller.minimize();
  controller.bringToFront();
  controller.restoreWindow();
  EXPECT_EQ(desktop.application.activations, 0);
  EXPECT_THAT(desktop.windows.windows, IsEmpty());
}

TEST_F(MainWindow, ComesBackAboveOthersWithoutTakingTheFocus) {
  launch();
  for (const auto notification :
       {DesktopNotification::ScreenParametersChanged, DesktopNotification::ActiveSpaceChanged,
        DesktopNotification::ApplicationActivated}) {
    native().orders.clear();
    native().level = 0;
    desktop.windows.notify(notification);
    EXPECT_THAT(native().orders, ElementsAre("regardless"));
    EXPECT_EQ(native().level, 25);
  }
  native().orders.clear();
  native().miniaturized = true;
  desktop.windows.notify(DesktopNotification::ApplicationActivated);
  native().miniaturized = false;
  native().visible = false;
  desktop.windows.notify(DesktopNotification::ApplicationActivated);
  EXPECT_THAT(native().orders, IsEmpty());
  delegate.reset();
  EXPECT_EQ(desktop.windows.observers.size(), 0U) << "the observers end with the window";
}

TEST_F(MainWindow, TellsThePageHowFarItsButtonsReach) {
  launch();
  const auto inset = [&](std::optional<double> rightEdge) {
    native().minimiseButton.reset();
    if (rightEdge) native().minimiseButton = Rect{{*rightEdge - 14, 4}, {14, 14}};
    native().delegate.lock()->windowDidResize();
    return page().scripts.back();
  };
  const auto script = [](const std::string& value) {
    return "document.documentElement.style.setProperty('--macos-titlebar-inset', '" + value +
           "px');";
  };
  EXPECT_EQ(inset(37.4), script("48.0"));
  EXPECT_EQ(inset(52.2), script("59.0"));
  EXPECT_EQ(inset(66), script("72.0"));
  EXPECT_EQ(inset(std::nullopt), script("54.0"));
}

TEST_F(MainWindow, SaysWhyThePageCannotBeShown) {
  launch();
  navigation()->didFail("The file does not exist.");
  EXPECT_EQ(native().message, "Velmor failed to load.\n\nThe file does not exist.");
  EXPECT_THAT(system.log.lines,
              ElementsAre("Velmor: web view navigation failed: The file does not exist."));

  system.log.lines.clear();
  system.bundle.resources.clear();
  desktop.windows.windows.clear();
  launch();
  EXPECT_EQ(native().message, "Velmor failed to load.\n\n"
                              "Velmor could not find its UI files in the app bundle.");
  EXPECT_THAT(system.log.lines, ElementsAre("Velmor: bridge script missing from bundle",
                                            "Velmor: index.html missing from bundle"));
  EXPECT_EQ(page().page, "");
  EXPECT_THAT(page().configuration.userScripts, ElementsAre(""));

  system.bundle.resources["index.html"] = "/app/index.html";
  desktop.windows.windows.clear();
  launch();
  EXPECT_EQ(page().page, "/app/index.html");
  EXPECT_EQ(native().message, "");
}

TEST_F(MainWindow, ALoadedPageComesToTheFront) {
  launch();
  native().orders.clear();
  const int activations = desktop.application.activations;
  navigation()->didFinish();
  EXPECT_THAT(native().orders, ElementsAre("regardless", "key"));
  EXPECT_EQ(desktop.application.activations, activations + 1);
}

TEST_F(MainWindow, TheMenuSaysAboutAndQuit) {
  launch();
  const auto& menu = desktop.application.menu;
  ASSERT_EQ(menu.size(), 3U);
  EXPECT_EQ(menu[0].title, "About Velmor");
  EXPECT_EQ(menu[1].title, "");
  EXPECT_EQ(menu[2].title, "Quit Velmor");
  EXPECT_EQ(menu[2].keyEquivalent, "q");
  menu[0].action();
  const auto fromMenu = page().scripts.back();
  EXPECT_EQ(fromMenu, R"(window.__velmorEmit("velmor:show-about", null);)");
  command("ShowAbout");
  EXPECT_THAT(page().scripts, testing::Contains(fromMenu).Times(2));
  menu[2].action();
  EXPECT_EQ(system.workspace.terminations, 1);
  EXPECT_FALSE(system.files.files.contains(configFile)) << "quitting saves nothing";
}

TEST_F(MainWindow, WithoutSettingsThereIsNoWindow) {
  system.files.writeFailure = "Permission denied";
  EXPECT_FALSE(delegate->applicationDidFinishLaunching());
  EXPECT_THAT(desktop.application.alerts, ElementsAre("Permission denied"));
  EXPECT_EQ(system.workspace.terminations, 1);
  EXPECT_THAT(desktop.windows.windows, IsEmpty());
  delegate->applicationShouldClose();
  delegate->applicationShouldHandleReopen();
  EXPECT_EQ(desktop.application.activations, 0);
}
