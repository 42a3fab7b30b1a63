#pragma once

#include "model/ConfigStore.h"
#include "platform/Desktop.h"
#include "platform/PageView.h"
#include "ui/MainWindowOwner.h"
#include "ui/VelmorWindow.h"
#include "ui/WebBridge.h"

#include <memory>
#include <string>

namespace velmor {

/// Builds the main window and the web view that fills it, loads the page, and shows in the window
/// why it could not be loaded. Main thread only.
class MainWindowController : public WindowDelegate,
                             public NavigationDelegate,
                             public std::enable_shared_from_this<MainWindowController> {
public:
  static constexpr Size minimumSize{static_cast<double>(WindowSettings::minimumWidth),
                                    static_cast<double>(WindowSettings::minimumHeight)};

  /// Builds everything and begins to load the page.
  [[nodiscard]] static std::shared_ptr<MainWindowController>
  make(const Platform& platform, const Desktop& desktop, const ConfigStore& configStore,
       std::shared_ptr<MainWindowOwner> app);

  [[nodiscard]] VelmorWindow& window() const { return *mainWindow; }

  void windowWillClose() override;
  void windowDidResize() override { updateTitlebarInset(); }
  void didFinish() override;
  void didFail(const std::string& description) override;

  /// The page's end of the bridge; "" when it is missing or unreadable.
  [[nodiscard]] static std::string loadBridgeScript(const Platform& platform);
  void showLoadFailure(const std::string& message);
  /// Tells the page how far from the left the window's buttons reach.
  void updateTitlebarInset();

private:
  MainWindowController(const Platform& thePlatform, const Desktop& theDesktop,
                       std::shared_ptr<MainWindowOwner> app);

  void makeWindow(const WindowSettings& saved);
  void makeWebView();
  /// False when there is no page to load.
  [[nodiscard]] bool loadPage();

  Platform platform;
  Desktop desktop;
  const std::shared_ptr<MainWindowOwner> appController;
  const std::shared_ptr<WebBridge> webBridge;
  std::shared_ptr<VelmorWindow> mainWindow;
  std::shared_ptr<PageView> webView;
};

} // namespace velmor
