#include "ui/WindowModeManager.h"

#include "platform/OverlayView.h"
#include "ui/FrameSettings.h"
#include "ui/Reachable.h"

#include <utility>

namespace velmor {

namespace {

constexpr Seconds watchInterval{0.1};
/// What the window system gets to end the minimising before the window changes its shape.
constexpr Seconds reshapeDelay{0.14};
/// What the desktop gets to put its panels and windows in place after the screens have changed.
constexpr Seconds settleDelay{0.5};
constexpr WindowAppearance compactAppearance{
    .titlebarTransparent = true,
    .titleHidden = true,
    .opaque = false,
    .background = {0, 0, 0, 0},
    .movableByBackground = false,
};

bool hasArea(const Rect& frame) {
  return frame.width() > 0 && frame.height() > 0;
}

/// Lies over the square and turns the mouse into "restore", for a click, or into a move of the
/// window. The page below hears nothing of it.
class CompactDragView : public OverlayView {
public:
  CompactDragView(const WindowServer& windowServer, std::weak_ptr<VelmorWindow> dragged)
      : server(windowServer), window(std::move(dragged)) {}

  bool hitTest(Point point) const override {
    const auto inside = window.lock();
    return inside && Rect{{}, inside->native().frame().size}.contains(point);
  }

  /// So that the first click works while another application is active.
  bool acceptsFirstMouse() const override { return true; }

  void mouseDown() override {
    const auto pressed = window.lock();
    if (!pressed) return;
    didDrag = false;
    const auto mouse = server.mouseLocation();
    const auto origin = pressed->native().frame().origin;
    dragOffset = {mouse.x - origin.x, mouse.y - origin.y};
  }

  /// Any movement makes the gesture a drag.
  void mouseDragged() override {
    const auto dragged = window.lock();
    if (!dragged) return;
    didDrag = true;
    const auto mouse = server.mouseLocation();
    auto frame = dragged->native().frame();
    frame.origin = {mouse.x - dragOffset.x, mouse.y - dragOffset.y};
    dragged->native().setFrame(frame);
  }

  void mouseUp() override {
    const auto released = window.lock();
    if (!released) return;
    if (std::exchange(didDrag, false))
      onDragEnded(released->native().frame().origin);
    else
      onRestore();
  }

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

} // namespace

void WindowModeManager::start(std::weak_ptr<VelmorWindow> watched, CompactHandler handler) {
  inDisplayLane([this, watched = std::move(watched), handler = std::move(handler)] {
    window = watched;
    onCompact = handler;
    startTimer();
    watchScreens();
  });
}

void WindowModeManager::startTimer() {
  watchTimer = loop.callEvery(MainLoop::Lane::Display, watchInterval, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->check();
  });
}

void WindowModeManager::watchScreens() {
  const auto weak = weak_from_this();
  const auto settled = [weak] {
    if (const auto self = weak.lock()) self->bringBackOnScreen();
  };
  const auto changed = [weak, settled] {
    const auto self = weak.lock();
    if (self)
      self->screensSettle = self->loop.callLater(MainLoop::Lane::Display, settleDelay, settled);
  };
  screenObservation = server.observe(DesktopNotification::ScreenParametersChanged, changed);
}

void WindowModeManager::bringBackOnScreen() {
  const auto watched = window.lock();
  if (!watched || !watched->native().isVisible() || watched->native().isMiniaturized()) return;
  const auto frame = watched->native().frame();
  const auto moved = reachable(frame, server.screens());
  if (moved != frame) watched->native().setFrame(moved);
}

void WindowModeManager::stop() {
  inDisplayLane([this] { endWatching(); });
}

void WindowModeManager::endWatching() {
  removeDragOverlay();
  watchTimer.reset();
  reshapeTimer.reset();
  screenObservation.reset();
  screensSettle.reset();
}

void WindowModeManager::restore() {
  inDisplayLane([this] { restoreNow(); });
}

std::optional<WindowSettings> WindowModeManager::savedBoundsIfCompact() const {
  const std::lock_guard guard(lock);
  if (!compact || !hasArea(normalFrame)) return std::nullopt;
  return frameSettings(normalFrame);
}

std::optional<WindowSettings> WindowModeManager::lastSeenBounds() const {
  const std::lock_guard guard(lock);
  return wasSeen && hasArea(normalFrame) ? std::optional(frameSettings(normalFrame)) : std::nullopt;
}

void WindowModeManager::check() {
  const auto watched = window.lock();
  if (!watched) return;
  const Window& native = watched->native();
  if (compact) {
    const auto frame = native.frame();
    if (frame.size == compactSize) compactOrigin = frame.origin;
  } else if (native.isMiniaturized()) {
    enterCompact(native);
  } else if (native.isVisible()) {
    const std::lock_guard guard(lock);
    normalFrame = native.frame();
    wasSeen = true;
  }
}

void WindowModeManager::enterCompact(const Window& entering) {
  {
    const std::lock_guard guard(lock);
    if (!hasArea(normalFrame)) normalFrame = entering.frame();
    compact = true;
  }
  if (onCompact) onCompact(true);
  reshapeTimer = loop.callLater(MainLoop::Lane::Display, reshapeDelay, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->reshape();
  });
}

void WindowModeManager::reshape() {
  reshapeTimer.reset();
  const auto shaped = window.lock();
  if (!shaped) return;
  const Point corner{normalFrame.maxX() - compactSize.width, normalFrame.minY()};
  Window& native = shaped->native();
  native.deminiaturize();
  native.setStyleMask(styleMask::borderless);
  shaped->setAlwaysOnTop();
  native.setAppearance(compactAppearance);
  native.setFrame(reachable({compactOrigin.value_or(corner), compactSize}, server.screens()));
  installDragOverlay(shaped);
}

void WindowModeManager::installDragOverlay(const std::shared_ptr<VelmorWindow>& covered) {
  const auto view = std::make_shared<CompactDragView>(server, covered);
  view->onRestore = [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->restore();
  };
  view->onDragEnded = [weak = weak_from_this()](Point origin) {
    if (const auto self = weak.lock()) self->compactOrigin = origin;
  };
  covered->native().setOverlay(view);
  dragOverlay = view;
}

void WindowModeManager::removeDragOverlay() {
  if (!std::exchange(dragOverlay, nullptr)) return;
  if (const auto covered = window.lock()) covered->native().setOverlay(nullptr);
}

void WindowModeManager::restoreNow() {
  const auto restored = window.lock();
  if (!restored || !compact) return;
  {
    const std::lock_guard guard(lock);
    compact = false;
  }
  Window& native = restored->native();
  // So early that the square has not been made yet: the window is still minimised.
  if (std::exchange(reshapeTimer, nullptr)) native.deminiaturize();
  removeDragOverlay();
  native.setStyleMask(VelmorWindow::fullStyle);
  restored->setAlwaysOnTop();
  native.setAppearance(VelmorWindow::fullAppearance);
  restored->applyStandardChrome();
  native.setFrame(reachable(normalFrame, server.screens()));
  if (onCompact) onCompact(false);
}

void WindowModeManager::inDisplayLane(std::function<void()> step) {
  loop.post(MainLoop::Lane::Display, [weak = weak_from_this(), step = std::move(step)] {
    if (const auto self = weak.lock()) step();
  });
}

} // namespace velmor
