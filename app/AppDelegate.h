#pragma once

#include "app/AppController.h"
#include "app/streams/WindowService.h"
#include "platform/Application.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "ui/MainWindowController.h"

#include <memory>

namespace velmor {

/// Starts and ends the application with a window. Main thread only.
class AppDelegate : public ApplicationDelegate, public std::enable_shared_from_this<AppDelegate> {
public:
  AppDelegate(const Platform& thePlatform, const Desktop& theDesktop)
      : platform(thePlatform), desktop(theDesktop) {}

  /// Opens the window. Without settings there is none: an alert says why, and the application
  /// terminates; gives false then.
  [[nodiscard]] bool applicationDidFinishLaunching();
  [[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed() override { return true; }
  void applicationShouldHandleReopen() override;
  void applicationHasLostDisplay() override;
  /// The system asks the application to end: the window closes as if the user had closed it.
  void applicationShouldClose();

  /// Lets other programs ask the window that has opened.
  void offerTo(LocalService& localService);

  void setupMenu();
  void showAbout();
  void quitApp();

private:
  Platform platform;
  Desktop desktop;
  std::shared_ptr<AppController> appController;
  std::shared_ptr<MainWindowController> windowController;
  std::unique_ptr<WindowService> windowService;
};

} // namespace velmor
