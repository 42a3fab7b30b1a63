#include "model/ConfigStore.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeMainWindowOwner.h"
#include "tests/fakes/FakePlatform.h"
#include "ui/MainWindowController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmor;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

class MainWindow : public testing::Test {
protected:
  MainWindow() {
    system.bundle.resources["Web/index.html"] = "/app/Web/index.html";
    system.bundle.resources["Web/velmor-bridge.js"] = "/app/Web/velmor-bridge.js";
    system.files.files["/app/Web/velmor-bridge.js"].bytes = "bridge()";
  }

  /// Builds the window, or builds it again.
  void build() {
    desktop.windows.windows.clear();
    controller = MainWindowController::make(system.platform, desktop.desktop, settings, app);
    system.loop.runPending();
  }

  FakeWindow& native() { return *desktop.windows.windows.front(); }
  FakePageView& page() { return *native().page; }

  FakePlatform system;
  FakeDesktop desktop;
  ConfigStore settings{system.platform};
  std::shared_ptr<FakeMainWindowOwner> app = std::make_shared<FakeMainWindowOwner>(system.loop);
  std::shared_ptr<MainWindowController> controller;
};

std::string insetScript(const std::string& inset) {
  return "document.documentElement.style.setProperty('--macos-titlebar-inset', '" + inset + "px');";
}

} // namespace

TEST_F(MainWindow, IsBuiltWithItsPageAndHandedToItsOwner) {
  build();
  ASSERT_EQ(desktop.windows.windows.size(), 1U);
  EXPECT_EQ(native().name, "Velmor");
  EXPECT_EQ(native().style, 0x8007U);
  EXPECT_EQ(native().behavior, 833U);
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(native().appearance,
            (WindowAppearance{true, true, false, {25.0 / 255, 25.0 / 255, 31.0 / 255, 1}, true}));
  EXPECT_THAT(native().isHidden,
              ElementsAre(Pair(WindowButton::Close, false), Pair(WindowButton::Miniaturize, false),
                          Pair(WindowButton::Zoom, true)));
  EXPECT_EQ(page().page, "/app/Web/index.html");
  EXPECT_EQ(page().readAccess, "/app/Web");
  EXPECT_THAT(page().configuration.userScripts, ElementsAre("bridge()"));
  EXPECT_TRUE(page().configuration.developerExtras);
  EXPECT_FALSE(page().configuration.drawsBackground);
  EXPECT_TRUE(page().configuration.mouseDownCanMoveWindow);
  EXPECT_THAT(page().scripts, ElementsAre(insetScript("54.0")));
  EXPECT_THAT(system.log.lines, IsEmpty());
  EXPECT_EQ(&app->mainWindow.lock()->native(), &native());
  EXPECT_THAT(app->calls, ElementsAre("configureWindow"));

  // The page and its owner speak with each other.
  page().handlers.at("velmor")("velmor", R"({"id":"1","method":"Quit"})");
  system.loop.runPending();
  EXPECT_EQ(page().scripts.back(), "window.__velmorResolve(\"1\", null);");
  app->bridge.lock()->emit(event::trackStopped, std::nullopt);
  EXPECT_EQ(page().scripts.back(), "window.__velmorEmit(\"velmor:track-stopped\", null);");
  native().close();
  EXPECT_THAT(app->calls, ElementsAre("configureWindow", "quit", "shutdown"));
  EXPECT_EQ(system.workspace.announcements, 1) << "whatever hangs";
}

TEST_F(MainWindow, AsksThePageOnceBeforeItClosesWhenThePageWantsThat) {
  build();
  const auto hold = [&](const char* value) {
    page().handlers.at("velmor")("velmor", R"({"id":"1","method":"HoldWindow","args":[)" +
                                               std::string(value) + "]}");
    system.loop.runPending();
  };
  hold("true");
  for (const auto* const value : {"1", "", "\"yes\""}) {
    hold(value);
    EXPECT_EQ(page().scripts.back(), "window.__velmorReject(\"1\", \"Invalid arguments\");");
  }
  native().closeByButton();
  EXPECT_EQ(page().scripts.back(), "window.__velmorEmit(\"velmor:close-asked\", null);");
  EXPECT_TRUE(native().isVisible());
  native().closeByButton();
  EXPECT_FALSE(native().isVisible());
  EXPECT_EQ(app->calls.back(), "shutdown");
}

TEST_F(MainWindow, IsAsLargeAsTheSettingsSayAndNoLarger) {
  auto config = settings.current();
  config.window = {.width = 500, .height = 700};
  settings.save(config);
  build();
  EXPECT_EQ(native().frame(), (Rect{{470, 100}, {500, 700}})) << "in the middle of the screen";
  EXPECT_EQ(native().minimum, (Size{376, 495}));
  EXPECT_EQ(native().maximum, (Size{500, 700}));
}

TEST_F(MainWindow, ComesToTheFrontOnceThePageIsThere) {
  build();
  native().orders.clear();
  native().level = 0;
  page().scripts.clear();
  page().delegate.lock()->didFinish();
  EXPECT_THAT(native().orders, ElementsAre("regardless", "key"));
  EXPECT_EQ(native().level, 25);
  EXPECT_EQ(desktop.application.activations, 1);
  EXPECT_THAT(page().scripts, ElementsAre(insetScript("54.0")));
}

TEST_F(MainWindow, ComesBackAboveOthersWhileItIsShown) {
  build();
  controller->window().enableAlwaysOnTop();
  struct Case {
    DesktopNotification notification;
    bool visible;
    bool miniaturized;
    bool raised;
  };
  using enum DesktopNotification;
  for (const auto& [notification, visible, miniaturized, raised] :
       {Case{ApplicationActivated, true, false, true},
        {ActiveSpaceChanged, true, false, true},
        {ScreenParametersChanged, true, false, true},
        {ApplicationActivated, true, true, false},
        {ApplicationActivated, false, false, false},
        {ActiveSpaceChanged, false, true, false}}) {
    native().visible = visible;
    native().miniaturized = miniaturized;
    native().level = 0;
    native().behavior = 0;
    native().orders.clear();
    desktop.windows.notify(notification);
    EXPECT_EQ(native().orders, std::vector<std::string>(raised ? 1 : 0, "regardless"));
    EXPECT_EQ(native().level, raised ? 25 : 0);
    EXPECT_EQ(native().behavior, raised ? 833U : 0U);
  }
}

TEST_F(MainWindow, TellsThePageHowFarItsButtonsReach) {
  build();
  const std::pair<std::optional<double>, std::string> cases[] = {
      {37.4, "48.0"}, {42.5, "49.0"}, {52.2, "59.0"}, {std::nullopt, "54.0"}};
  for (const auto& [rightEdge, inset] : cases) {
    native().minimiseButton.reset();
    if (rightEdge) native().minimiseButton = Rect{{*rightEdge - 14, 4}, {14, 14}};
    native().isHidden.clear();
    native().delegate.lock()->windowDidResize();
    EXPECT_EQ(page().scripts.back(), insetScript(inset));
    EXPECT_EQ(native().isHidden.size(), 3U);
  }
}

TEST_F(MainWindow, LoadsALostPageAgainOnceAndThenSaysSo) {
  build();
  app->calls.clear();
  const auto lost = [&] { page().delegate.lock()->processDidTerminate("It ended."); };
  page().handlers.at("velmor")("velmor", R"({"id":"1","method":"SuggestTracks"})");
  system.loop.runPending();
  page().page.clear();
  page().scripts.clear();
  lost();
  system.loop.advance(Seconds{20});
  EXPECT_EQ(page().page, "/app/Web/index.html");
  EXPECT_THAT(page().scripts, IsEmpty()) << "no answer to the old page reaches the new one";
  EXPECT_THAT(app->calls, ElementsAre("stopNowPlayingWatcher", "cancelled"));
  EXPECT_THAT(desktop.application.alerts, IsEmpty());

  page().page.clear();
  lost();
  EXPECT_EQ(page().page, "");
  EXPECT_EQ(app->calls.back(), "stopNowPlayingWatcher");
  EXPECT_EQ(native().message, "Velmor failed to load.\n\nIt ended.");
  EXPECT_THAT(desktop.application.alerts,
              ElementsAre("It ended. Velmor has stopped watching for tracks. Close its window and "
                          "start it again."));
}

TEST_F(MainWindow, SaysWhyThePageCannotBeShown) {
  build();
  native().orders.clear();
  page().delegate.lock()->didFail("The file does not exist.");
  EXPECT_EQ(native().message, "Velmor failed to load.\n\nThe file does not exist.");
  EXPECT_EQ(native().messageMargin, 16);
  EXPECT_THAT(native().orders, ElementsAre("regardless", "key"));

  system.bundle.resources = {{"index.html", "/app/index.html"}};
  build();
  EXPECT_EQ(page().page, "/app/index.html");
  EXPECT_EQ(native().message, "");

  system.bundle.resources.clear();
  build();
  EXPECT_EQ(page().page, "");
  EXPECT_EQ(native().message, "Velmor failed to load.\n\n"
                              "Velmor could not find its UI files in the app bundle.");
  const auto noScript = "Velmor: bridge script missing from bundle";
  EXPECT_THAT(system.log.lines,
              ElementsAre("Velmor: web view navigation failed: The file does not exist.", noScript,
                          noScript, "Velmor: index.html missing from bundle"));
}
