#pragma once

#include "platform/OverlayView.h"
#include "platform/linux/glib/GlibHandles.h"

#include <functional>
#include <memory>

struct _GtkOverlay;
struct _GtkWidget;

namespace velmor {

/// Lays an overlay view over a window's content, where it takes the mouse before anything below.
class GtkGlass {
public:
  /// Gets a press that opens the context menu, as the toolkit's event.
  using MenuHandler = std::function<void(void* event)>;

  GtkGlass(_GtkOverlay* content, MenuHandler menuHandler);

  /// Null takes the glass away.
  void setView(std::shared_ptr<OverlayView> laid);

private:
  /// These tell whether the event ends here.
  [[nodiscard]] bool pressed(void* event);
  [[nodiscard]] bool moved();
  [[nodiscard]] bool released(unsigned button);

  MenuHandler onMenu;
  std::shared_ptr<OverlayView> view;
  _GtkWidget* box;
  bool isDown = false;
  SignalConnections signals;
};

} // namespace velmor
