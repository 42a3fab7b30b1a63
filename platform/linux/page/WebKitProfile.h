#pragma once

#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/glib/SignalConnections.h"

#include <filesystem>
#include <functional>
#include <string>

struct _WebKitWebView;
struct _WebKitSettings;
struct _WebKitWebContext;

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

/// What the web views of this application have in common: where they keep their data, and what
/// they are not for.
class WebKitProfile {
public:
  /// Tells the toolkit, before its first view, to leave the graphics card alone; what this process
  /// starts inherits it.
  static void drawOnProcessor();
  /// The environment variable by which it is told.
  static constexpr auto processorVariable = "WEBKIT_DISABLE_DMABUF_RENDERER";

  /// `folder` is private to this application and exists.
  explicit WebKitProfile(const std::filesystem::path& folder);

  [[nodiscard]] _WebKitWebContext* context() const { return webContext.get(); }
  [[nodiscard]] GObjectPtr<_WebKitSettings> makeSettings(bool developerExtras) const;

private:
  GObjectPtr<_WebKitWebContext> webContext;
  SignalConnections signals;
};

} // namespace velmor
