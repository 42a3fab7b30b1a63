#include "app/AppDelegate.h"

#include "platform/Workspace.h"

namespace velmor {

bool AppDelegate::applicationDidFinishLaunching() {
  setupMenu();
  std::shared_ptr<ConfigStore> configStore;
  try {
    configStore = std::make_shared<ConfigStore>(platform);
  } catch (const std::exception& error) {
    desktop.application.runAlert(error.what());
    platform.workspace.terminate();
    return false;
  }
  appController = std::make_shared<AppController>(platform, configStore, desktop);
  windowController = MainWindowController::make(platform, desktop, *configStore, appController);
  VelmorWindow& window = windowController->window();
  window.makeKeyAndOrderFront();
  window.orderFrontRegardless();
  desktop.application.activateIgnoringOtherApps();
  return true;
}

void AppDelegate::applicationShouldHandleReopen() {
  if (appController) appController->bringToFront();
}

void AppDelegate::applicationHasLostDisplay() {
  if (appController) appController->saveLastSeenFrame();
}

void AppDelegate::applicationShouldClose() {
  if (windowController) {
    windowController->window().native().close();
  } else {
    platform.workspace.terminate();
  }
}

void AppDelegate::offerTo(LocalService& localService) {
  windowService = std::make_unique<WindowService>(platform, appController);
  windowService->start(localService);
}

void AppDelegate::setupMenu() {
  const auto calling = [weak = weak_from_this()](void (AppDelegate::*action)()) {
    return [weak, action] {
      if (const auto self = weak.lock()) ((*self).*action)();
    };
  };
  desktop.application.setMainMenu({{"About Velmor", "", calling(&AppDelegate::showAbout)},
                                   {},
                                   {"Quit Velmor", "q", calling(&AppDelegate::quitApp)}});
}

void AppDelegate::showAbout() {
  if (appController) appController->showAbout();
}

void AppDelegate::quitApp() {
  platform.workspace.terminate();
}

} // namespace velmor
