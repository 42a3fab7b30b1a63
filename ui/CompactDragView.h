#pragma once

#include "platform/OverlayView.h"
#include "ui/VelmorWindow.h"

#include <functional>
#include <memory>

namespace velmor {

/// Lies over the compact square and turns the mouse into "restore", for a click, or into a move of
/// the window. The page below hears nothing of it.
class CompactDragView : public OverlayView {
public:
  CompactDragView(const WindowServer& windowServer, std::weak_ptr<VelmorWindow> dragged);

  [[nodiscard]] bool hitTest(Point point) const override;
  /// So that the first click works while another application is active.
  [[nodiscard]] bool acceptsFirstMouse() const override { return true; }
  void mouseDown() override;
  /// Any movement makes the gesture a drag.
  void mouseDragged() override;
  void mouseUp() override;

  std::function<void()> onRestore;
  /// Gets the window's new origin.
  std::function<void(Point)> onDragEnded;

private:
  const WindowServer& server;
  const std::weak_ptr<VelmorWindow> window;
  /// From the window's origin to the mouse, when the button went down.
  Point dragOffset;
  bool didDrag = false;
};

} // namespace velmor
