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
  /// `folder` is private to this application and exists.
  explicit WebKitProfile(const std::filesystem::path& folder);

  [[nodiscard]] _WebKitWebContext* context() const { return webContext.get(); }
  [[nodiscard]] GObjectPtr<_WebKitSettings> makeSettings(bool developerExtras) const;

private:
  GObjectPtr<_WebKitWebContext> webContext;
  SignalConnections signals;
};

} // namespace velmor
