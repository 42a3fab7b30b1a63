#include "ui/WindowModeManager.h"

#include "ui/FrameSettings.h"

#include <utility>

namespace velmor {

namespace {

constexpr Seconds watchInterval{0.1};
constexpr Seconds reshapeDelay{0.14};
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

} // namespace

void WindowModeManager::start(std::weak_ptr<VelmorWindow> watched, CompactHandler handler) {
  {
    const std::lock_guard guard(lock);
    window = std::move(watched);
    onCompact = std::move(handler);
  }
  inDisplayLane(&WindowModeManager::startTimer);
}

void WindowModeManager::startTimer() {
  watchTimer = loop.callEvery(MainLoop::Lane::Display, watchInterval, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->check();
  });
}

void WindowModeManager::stop() {
  inDisplayLane(&WindowModeManager::endWatching);
}

void WindowModeManager::endWatching() {
  removeDragOverlay();
  watchTimer.reset();
  reshapeTimer.reset();
}

void WindowModeManager::restore() {
  inDisplayLane(&WindowModeManager::restoreNow);
}

std::optional<WindowSettings> WindowModeManager::savedBoundsIfCompact() const {
  const std::lock_guard guard(lock);
  if (!compact || !hasArea(normalFrame)) return std::nullopt;
  return frameSettings(normalFrame);
}

void WindowModeManager::check() {
  const auto watched = watchedWindow();
  if (!watched) return;
  const Window& native = watched->native();
  if (isCompact()) {
    const auto frame = native.frame();
    if (frame.size == compactSize) rememberCompactOrigin(frame.origin);
    return;
  }
  if (native.isMiniaturized()) {
    enterCompact(*watched);
  } else if (native.isVisible()) {
    const std::lock_guard guard(lock);
    if (!compact) normalFrame = native.frame();
  }
}

void WindowModeManager::enterCompact(VelmorWindow& entering) {
  CompactHandler handler;
  {
    const std::lock_guard guard(lock);
    if (compact) return;
    if (!hasArea(normalFrame)) normalFrame = entering.native().frame();
    compact = true;
    handler = onCompact;
  }
  if (handler) handler(true);
  reshapeTimer = loop.callLater(MainLoop::Lane::Display, reshapeDelay, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->reshape();
  });
}

void WindowModeManager::reshape() {
  reshapeTimer.reset();
  const auto shaped = watchedWindow();
  if (!shaped) return;
  Point origin;
  {
    const std::lock_guard guard(lock);
    origin =
        compactOrigin.value_or(Point{normalFrame.maxX() - compactSize.width, normalFrame.minY()});
  }
  Window& native = shaped->native();
  native.deminiaturize();
  native.setStyleMask(styleMask::borderless);
  shaped->setAlwaysOnTop();
  native.setAppearance(compactAppearance);
  native.setFrame({origin, compactSize});
  installDragOverlay(*shaped);
}

void WindowModeManager::installDragOverlay(VelmorWindow& covered) {
  removeDragOverlay();
  dragOverlay = std::make_shared<CompactDragView>(server, covered.weak_from_this());
  dragOverlay->onRestore = [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->restore();
  };
  dragOverlay->onDragEnded = [weak = weak_from_this()](Point origin) {
    if (const auto self = weak.lock()) self->rememberCompactOrigin(origin);
  };
  covered.native().setOverlay(dragOverlay);
}

void WindowModeManager::removeDragOverlay() {
  if (!std::exchange(dragOverlay, nullptr)) return;
  if (const auto covered = watchedWindow()) covered->native().setOverlay(nullptr);
}

void WindowModeManager::restoreNow() {
  const auto restored = watchedWindow();
  if (!restored) return;
  Rect frame;
  CompactHandler handler;
  {
    const std::lock_guard guard(lock);
    if (!compact) return;
    frame = normalFrame;
    compact = false;
    handler = onCompact;
  }
  Window& native = restored->native();
  // So early that the square has not been made yet: the window is still minimised.
  if (std::exchange(reshapeTimer, nullptr)) native.deminiaturize();
  removeDragOverlay();
  native.setStyleMask(VelmorWindow::fullStyle);
  restored->setAlwaysOnTop();
  native.setAppearance(VelmorWindow::fullAppearance);
  restored->applyStandardChrome();
  native.setFrame(frame);
  if (handler) handler(false);
}

void WindowModeManager::rememberCompactOrigin(Point origin) {
  const std::lock_guard guard(lock);
  compactOrigin = origin;
}

std::shared_ptr<VelmorWindow> WindowModeManager::watchedWindow() const {
  const std::lock_guard guard(lock);
  return window.lock();
}

bool WindowModeManager::isCompact() const {
  const std::lock_guard guard(lock);
  return compact;
}

void WindowModeManager::inDisplayLane(void (WindowModeManager::*step)()) {
  loop.post(MainLoop::Lane::Display, [weak = weak_from_this(), step] {
    if (const auto self = weak.lock()) ((*self).*step)();
  });
}

} // namespace velmor
