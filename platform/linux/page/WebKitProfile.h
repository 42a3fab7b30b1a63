#pragma once

#include "platform/linux/glib/GlibHandles.h"

#include <filesystem>

struct _WebKitSettings;
struct _WebKitUserContentManager;
struct _WebKitWebContext;

namespace velmor {

/// What the web views of this application have in common: where they keep their data, what they
/// are not for, and how scripts get into them. Main thread.
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
  [[nodiscard]] GlibPtr<_WebKitSettings> makeSettings(bool developerExtras) const;

  /// Runs the script whenever a view of the manager begins to load a page, in the main frame only
  /// and before the page's own scripts. In a world of another name than the page's, null, the page
  /// sees nothing of it.
  static void addScript(_WebKitUserContentManager* manager, const char* source,
                        const char* world = nullptr);

private:
  GlibPtr<_WebKitWebContext> webContext;
  SignalConnections signals;
};

} // namespace velmor
