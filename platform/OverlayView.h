#pragma once

#include "platform/Geometry.h"

namespace velmor {

/// A transparent view that takes the mouse in a window. Called in the display lane.
class OverlayView {
public:
  virtual ~OverlayView() = default;

  /// Whether a press at this point of the content view, whose bottom left is the origin, belongs to
  /// the view.
  [[nodiscard]] virtual bool hitTest(Point point) const = 0;
  /// Whether it takes the click that makes an inactive application active.
  [[nodiscard]] virtual bool acceptsFirstMouse() const = 0;

  // One gesture of the main button. Where the mouse is, the window server says.
  virtual void mouseDown() = 0;
  virtual void mouseDragged() = 0;
  virtual void mouseUp() = 0;
};

} // namespace velmor
