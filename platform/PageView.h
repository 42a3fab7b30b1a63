#pragma once

#include "platform/WebView.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velmor {

struct WebViewConfiguration {
  /// Run in this order at document start, in the main frame only.
  std::vector<std::string> userScripts;
  bool developerExtras = false;
  /// False lets the window's colour shine through until the page paints something.
  bool drawsBackground = true;
  /// A drag that the page does not handle moves the window.
  bool mouseDownCanMoveWindow = false;
};

/// Hears how loading goes, in the display lane.
class NavigationDelegate {
public:
  virtual ~NavigationDelegate() = default;

  virtual void didFinish() = 0;
  /// The page could not be loaded. The description is a sentence for the user.
  virtual void didFail(const std::string& description) = 0;
  /// The process that runs the page has ended by itself, and the page with it; it may be loaded
  /// again. The description is a sentence for the user.
  virtual void processDidTerminate(const std::string& description) = 0;
};

/// A web view in a window. It shows one page of the bundle and goes nowhere else.
class PageView : public WebView {
public:
  virtual void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) = 0;

  /// Loads a local page, which may read the files in `readAccess` and below.
  virtual void loadFile(const std::filesystem::path& page,
                        const std::filesystem::path& readAccess) = 0;
};

} // namespace velmor
