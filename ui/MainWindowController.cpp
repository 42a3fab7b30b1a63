#include "ui/MainWindowController.h"

#include "base/Number.h"
#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmor {

namespace {

constexpr auto pageFolder = "Web";
// Points.
constexpr double messageMargin = 16;
constexpr double gapAfterButtons = 6;
constexpr double smallestInset = 48;
constexpr double insetWithoutButtons = 54;

/// The page's end of the bridge; "" when it is missing or unreadable.
std::string loadBridgeScript(const Platform& platform) {
  const auto script = platform.bundle.resource("velmor-bridge", "js", pageFolder);
  return script ? platform.files.read(*script).value_or("") : "";
}

} // namespace

std::shared_ptr<MainWindowController>
MainWindowController::make(const Platform& platform, const Desktop& desktop,
                           const ConfigStore& configStore, std::shared_ptr<MainWindowOwner> app) {
  std::shared_ptr<MainWindowController> controller(
      new MainWindowController(platform, desktop, std::move(app)));
  controller->makeWindow(configStore.current().window);
  controller->makeWebView();
  // The page loads by itself from here on, while the window is put in its place.
  const bool hasPage = controller->loadPage();
  controller->appController->setMainWindow(controller->mainWindow);
  controller->appController->configureWindow(controller->window());
  if (!hasPage) {
    platform.log.write("Velmor: index.html missing from bundle");
    controller->showLoadFailure("Velmor could not find its UI files in the app bundle.");
  }
  return controller;
}

MainWindowController::MainWindowController(const Platform& thePlatform, const Desktop& theDesktop,
                                           std::shared_ptr<MainWindowOwner> app)
    : platform(thePlatform)
    , desktop(theDesktop)
    , appController(std::move(app))
    , webBridge(std::make_shared<WebBridge>(platform.mainLoop, appController)) {
  appController->setWebBridge(webBridge);
}

void MainWindowController::makeWindow(const WindowSettings& saved) {
  const Size size{std::max(static_cast<double>(saved.width), minimumSize.width),
                  std::max(static_cast<double>(saved.height), minimumSize.height)};
  mainWindow =
      std::make_shared<VelmorWindow>(desktop.windows, Rect{{}, size}, VelmorWindow::fullStyle);
  Window& native = mainWindow->native();
  native.setTitle(VelmorWindow::title);
  native.setAppearance(VelmorWindow::fullAppearance);
  native.setMinimumSize(minimumSize);
  native.setMaximumSize(size);
  mainWindow->enableAlwaysOnTop();
  native.center();
  mainWindow->applyStandardChrome();
  native.setDelegate(weak_from_this());
  platform.mainLoop.post(MainLoop::Lane::Display, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->updateTitlebarInset();
  });
}

void MainWindowController::makeWebView() {
  const auto bridgeScript = loadBridgeScript(platform);
  if (bridgeScript.empty()) platform.log.write("Velmor: bridge script missing from bundle");
  webView.emplace(mainWindow->native(), WebViewConfiguration{.userScripts = {bridgeScript},
                                                             .developerExtras = true,
                                                             .drawsBackground = false});
  const auto& native = webView->native();
  native->setNavigationDelegate(weak_from_this());
  webBridge->setWebView(native);
  native->addMessageHandler(
      WebBridge::handlerName,
      [bridge = webBridge](const auto& name, const auto& body) { bridge->didReceive(name, body); });
}

bool MainWindowController::loadPage() {
  auto page = platform.bundle.resource("index", "html", pageFolder);
  if (!page) page = platform.bundle.resource("index", "html", "");
  if (!page) return false;
  webView->native()->loadFile(*page, page->parent_path());
  return true;
}

void MainWindowController::windowWillClose() {
  // Saving the window's place may hang like anything else.
  platform.workspace.willTerminate();
  appController->shutdown(*mainWindow);
}

void MainWindowController::didFinish() {
  updateTitlebarInset();
  mainWindow->orderFrontRegardless();
  mainWindow->makeKeyAndOrderFront();
  desktop.application.activateIgnoringOtherApps();
}

void MainWindowController::didFail(const std::string& description) {
  platform.log.write("Velmor: web view navigation failed: " + description);
  showLoadFailure(description);
}

void MainWindowController::processDidTerminate(const std::string& description) {
  platform.log.write("Velmor: the page was lost: " + description);
  webBridge->forgetPage();
  // The next page starts it anew, and so hears of the track that plays.
  appController->stopNowPlayingWatcher();
  if (!std::exchange(hasReloaded, true) && loadPage()) return;
  showLoadFailure(description);
  desktop.application.showAlert(description +
                                " Velmor has stopped watching for tracks. Close its window and "
                                "start it again.");
}

void MainWindowController::showLoadFailure(const std::string& message) {
  mainWindow->native().showMessage("Velmor failed to load.\n\n" + message, messageMargin);
  mainWindow->orderFrontRegardless();
  mainWindow->makeKeyAndOrderFront();
}

void MainWindowController::updateTitlebarInset() {
  mainWindow->applyStandardChrome();
  const auto button = mainWindow->native().buttonFrame(WindowButton::Miniaturize);
  const double inset = button ? std::max(smallestInset, std::ceil(button->maxX() + gapAfterButtons))
                              : insetWithoutButtons;
  if (!webView) return;
  webView->native()->evaluateJavaScript("document.documentElement.style.setProperty("
                                        "'--macos-titlebar-inset', '" +
                                        number::formatFixed(inset, 1) + "px');");
}

} // namespace velmor
