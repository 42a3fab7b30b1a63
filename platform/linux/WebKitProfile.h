#pragma once

#include "platform/linux/GObjectPtr.h"
#include "platform/linux/SignalConnections.h"

#include <filesystem>

struct _WebKitSettings;
struct _WebKitWebContext;

namespace velmor {

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
