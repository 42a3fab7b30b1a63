#pragma once

#include "model/ConfigStore.h"
#include "platform/Desktop.h"
#include "platform/PageView.h"
#include "platform/Platform.h"
#include "ui/DraggingWebView.h"
#include "ui/MainWindowOwner.h"
#include "ui/VelmorWindow.h"
#include "ui/WebBridge.h"

#include <memory>
#include <optional>
#include <string>

namespace velmor {

/// Builds the main window and the web view that fills it, loads the page, and shows in the window
/// why it could not be loaded. Main thread only.
class MainWindowController : public WindowDelegate,
                             public NavigationDelegate,
                             public std::enable_shared_from_this<MainWindowController> {
public:
  /// The least size in points that the user may give the full window.
  static constexpr Size minimumSize{static_cast<double>(WindowSettings::minimumWidth),
                                    static_cast<double>(WindowSettings::minimumHeight)};

  /// Builds everything, begins to load the page and hands the window to its owner.
  [[nodiscard]] static std::shared_ptr<MainWindowController>
  make(const Platform& platform, const Desktop& desktop, const ConfigStore& configStore,
       std::shared_ptr<MainWindowOwner> app);

  [[nodiscard]] VelmorWindow& window() const { return *mainWindow; }

private:
  MainWindowController(const Platform& thePlatform, const Desktop& theDesktop,
                       std::shared_ptr<MainWindowOwner> app);

  void makeWindow(const WindowSettings& saved);
  void makeWebView();
  /// False when there is no page to load.
  [[nodiscard]] bool loadPage();
  void showLoadFailure(const std::string& message);
  /// Tells the page how far from the left the window's buttons reach.
  void updateTitlebarInset();

  [[nodiscard]] bool windowShouldClose() override { return webBridge->mayClose(); }
  void windowWillClose() override;
  void windowDidResize() override { updateTitlebarInset(); }
  void didFinish() override;
  void didFail(const std::string& description) override;
  /// Loads the page again the first time. The next time something is wrong with it: the user is
  /// told, and nothing more is done for a page that nobody sees.
  void processDidTerminate(const std::string& description) override;

  Platform platform;
  Desktop desktop;
  const std::shared_ptr<MainWindowOwner> appController;
  const std::shared_ptr<WebBridge> webBridge;
  std::shared_ptr<VelmorWindow> mainWindow;
  std::optional<DraggingWebView> webView;
  bool hasReloaded = false;
};

} // namespace velmor
