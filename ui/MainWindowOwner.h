#pragma once

#include "ui/AppCommands.h"
#include "ui/EventSink.h"

#include <memory>

namespace velmor {

class VelmorWindow;

/// The application as its main window sees it. Main thread only.
class MainWindowOwner : public AppCommands {
public:
  /// Where events go from now on.
  virtual void setWebBridge(std::weak_ptr<EventSink> bridge) = 0;
  virtual void setMainWindow(std::weak_ptr<VelmorWindow> window) = 0;

  /// Puts the main window in its place and shows it.
  virtual void configureWindow(VelmorWindow& window) = 0;
  /// The main window is closing.
  virtual void shutdown(VelmorWindow& window) = 0;
};

} // namespace velmor
