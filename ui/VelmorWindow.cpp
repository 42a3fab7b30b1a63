#include "ui/VelmorWindow.h"

namespace velmor {

static_assert(VelmorWindow::behavior == 833 && VelmorWindow::fullStyle == 0x8007);

VelmorWindow::VelmorWindow(WindowServer& windowServer, const Rect& contentRect, unsigned styleMask)
    : server(windowServer), window(windowServer.makeWindow(contentRect, styleMask)) {}

void VelmorWindow::enableAlwaysOnTop() {
  setAlwaysOnTop();
  if (!alwaysOnTopObservers.empty()) return;
  for (const auto notification :
       {DesktopNotification::ScreenParametersChanged, DesktopNotification::ActiveSpaceChanged,
        DesktopNotification::ApplicationActivated}) {
    alwaysOnTopObservers.push_back(server.observe(notification, [weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->comeBackAbove();
    }));
  }
}

void VelmorWindow::comeBackAbove() {
  if (!window->isVisible() || window->isMiniaturized()) return;
  orderFrontRegardless();
}

void VelmorWindow::applyStandardChrome() {
  window->setButtonHidden(WindowButton::Close, false);
  window->setButtonHidden(WindowButton::Miniaturize, false);
  window->setButtonHidden(WindowButton::Zoom, true);
}

void VelmorWindow::setAlwaysOnTop() {
  window->setLevel(level);
  window->setCollectionBehavior(behavior);
}

void VelmorWindow::makeKeyAndOrderFront() {
  setAlwaysOnTop();
  window->makeKeyAndOrderFront();
  applyStandardChrome();
}

void VelmorWindow::orderFront() {
  setAlwaysOnTop();
  window->orderFront();
}

void VelmorWindow::orderFrontRegardless() {
  setAlwaysOnTop();
  window->orderFrontRegardless();
}

} // namespace velmor
