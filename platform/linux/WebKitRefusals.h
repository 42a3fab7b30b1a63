#pragma once

#include "platform/linux/SignalConnections.h"

#include <functional>
#include <string>

struct _WebKitWebView;

namespace velmor {

/// Keeps a web view to its one page: whatever leads elsewhere or wants more is refused. That is
/// other pages, also those of frames and dropped files, new windows, downloads and permissions.
class WebKitRefusals {
public:
  /// Gets the toolkit's event, null for a key.
  using MenuHandler = std::function<void(void* event)>;

  /// `menuHandler` is called where the view would have shown a menu of its own, with Back and
  /// Reload; texts that can be edited or copied keep theirs.
  WebKitRefusals(_WebKitWebView* view, MenuHandler menuHandler);

  /// The one address that may be loaded, once, from now on.
  void setPage(const std::string& address);

private:
  [[nodiscard]] bool allows(const std::string& address);

  MenuHandler onMenu;
  std::string page;
  bool begun = false;
  SignalConnections signals;
};

} // namespace velmor
