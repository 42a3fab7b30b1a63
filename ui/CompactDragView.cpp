#include "ui/CompactDragView.h"

#include <utility>

namespace velmor {

CompactDragView::CompactDragView(const WindowServer& windowServer,
                                 std::weak_ptr<VelmorWindow> dragged)
    : server(windowServer), window(std::move(dragged)) {}

bool CompactDragView::hitTest(Point point) const {
  const auto inside = window.lock();
  if (!inside) return false;
  return Rect{{}, inside->native().frame().size}.contains(point);
}

void CompactDragView::mouseDown() {
  const auto pressed = window.lock();
  if (!pressed) return;
  didDrag = false;
  const auto mouse = server.mouseLocation();
  const auto origin = pressed->native().frame().origin;
  dragOffset = {mouse.x - origin.x, mouse.y - origin.y};
}

void CompactDragView::mouseDragged() {
  const auto dragged = window.lock();
  if (!dragged) return;
  didDrag = true;
  const auto mouse = server.mouseLocation();
  auto frame = dragged->native().frame();
  frame.origin = {mouse.x - dragOffset.x, mouse.y - dragOffset.y};
  dragged->native().setFrame(frame);
}

void CompactDragView::mouseUp() {
  const auto released = window.lock();
  if (!released) return;
  if (std::exchange(didDrag, false)) {
    if (onDragEnded) onDragEnded(released->native().frame().origin);
  } else if (onRestore) {
    onRestore();
  }
}

} // namespace velmor
