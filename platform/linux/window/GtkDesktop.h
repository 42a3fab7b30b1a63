#pragma once

#include "platform/Application.h"
#include "platform/Geometry.h"
#include "platform/MainLoop.h"
#include "platform/Platform.h"
#include "platform/WindowServer.h"
#include "platform/linux/desktop/WindowProperties.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/page/WebKitProfile.h"
#include "platform/linux/window/GtkMainMenu.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct _GApplication;
struct _GtkWidget;

namespace velmor {

class GtkAppWindow;

/// The user's X11 desktop, and this application on it.
class GtkDesktop final : public WindowServer, public Application {
public:
  /// Connects to the display that the environment names; null when there is none.
  [[nodiscard]] static std::unique_ptr<GtkDesktop> open(const Platform& platform);

  GtkDesktop(const GtkDesktop&) = delete;
  GtkDesktop& operator=(const GtkDesktop&) = delete;
  ~GtkDesktop() override;

  [[nodiscard]] std::shared_ptr<Window> makeWindow(const Rect& content,
                                                   unsigned styleMask) override;
  [[nodiscard]] std::shared_ptr<Window> window(const std::string& title) const override;
  [[nodiscard]] std::vector<Screen> screens() const override;
  [[nodiscard]] Point mouseLocation() const override;
  [[nodiscard]] std::unique_ptr<DesktopObservation> observe(DesktopNotification notification,
                                                            MainLoop::Work work) override;

  [[nodiscard]] bool handOverToRunningInstance() override;
  void setDelegate(std::weak_ptr<ApplicationDelegate> heard) override {
    delegate = std::move(heard);
  }
  void setMainMenu(std::vector<MenuItem> items) override { menu.setItems(std::move(items)); }
  void activateIgnoringOtherApps() override;
  void showAlert(const std::string& message) override;
  void runAlert(const std::string& message) override;

private:
  class Observers;

  explicit GtkDesktop(const Platform& thePlatform);

  void windowClosed();
  /// Called in the middle of whatever has found out; does not return.
  [[noreturn]] void displayLost();
  void watchDisplay();
  void watchSessionBus();
  [[nodiscard]] WebKitProfile& webProfile();

  Platform platform;
  std::weak_ptr<ApplicationDelegate> delegate;
  GlibPtr<_GApplication> application;
  SignalConnections signals;
  GtkMainMenu menu;
  /// While it waits for an answer.
  _GtkWidget* alert = nullptr;
  WindowProperties properties;
  std::unique_ptr<Observers> observers;
  /// Made with the first window: it starts processes.
  std::optional<WebKitProfile> profile;
  std::vector<std::weak_ptr<GtkAppWindow>> windows;
};

} // namespace velmor
