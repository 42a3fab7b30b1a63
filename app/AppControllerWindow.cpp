#include "app/AppController.h"
#include "platform/Application.h"
#include "platform/SystemLog.h"
#include "ui/FrameSettings.h"
#include "ui/MainWindowController.h"
#include "ui/Reachable.h"

#include <algorithm>
#include <cmath>

namespace velmor {

namespace {

/// A window counts as visible when a screen shows at least this much of it both ways.
constexpr double smallestOverlap = 120;

bool shows(const Screen& screen, const Rect& frame) {
  const auto overlap = screen.visibleFrame.intersection(frame);
  return overlap.width() >= smallestOverlap && overlap.height() >= smallestOverlap;
}

/// Back to the saved place; to the middle of the screen when none has been saved.
void applySavedWindowFrame(const WindowSettings& saved, VelmorWindow& window) {
  Window& native = window.native();
  if (saved.x < 0 || saved.y < 0) {
    native.center();
    return;
  }
  const auto minimum = native.minimumSize();
  native.setFrame({{static_cast<double>(saved.x), static_cast<double>(saved.y)},
                   {std::max(static_cast<double>(saved.width), std::trunc(minimum.width)),
                    std::max(static_cast<double>(saved.height), std::trunc(minimum.height))}});
}

} // namespace

void AppController::configureWindow(VelmorWindow& window) {
  applySavedWindowFrame(configStore->current().window, window);
  ensureWindowIsVisible(window);
  // It is as large as ever on a screen that is too small for it, and is saved so.
  keepTopInSight(window.native());
  window.makeKeyAndOrderFront();
  if (!windowMode) return;
  windowMode->start(window.weak_from_this(), [this](bool compact) { compactModeChanged(compact); });
}

void AppController::keepTopInSight(Window& native) const {
  if (!desktop) return;
  const auto frame = native.frame();
  const auto lowered = withTopInSight(frame, desktop->windows.screens());
  if (lowered != frame) native.setFrame(lowered);
}

void AppController::compactModeChanged(bool compact) {
  emitPlain(event::compactMode, compact ? "true" : "false");
  if (const auto window = mainWindow.lock()) {
    window->native().setMinimumSize(compact ? Size{} : MainWindowController::minimumSize);
  }
}

void AppController::ensureWindowIsVisible(VelmorWindow& window) {
  Window& native = window.native();
  if (desktop) {
    const auto screens = desktop->windows.screens();
    const auto showsWindow = [&](const auto& screen) { return shows(screen, native.frame()); };
    if (std::any_of(screens.begin(), screens.end(), showsWindow)) return;
  }
  native.center();
  saveWindow(frameSettings(native.frame()));
}

void AppController::shutdown(VelmorWindow& window) {
  std::optional<WindowSettings> normal;
  if (windowMode) {
    windowMode->stop();
    normal = windowMode->savedBoundsIfCompact();
  }
  stopNowPlayingWatcher();
  saveWindow(normal.value_or(frameSettings(window.native().frame())));
}

void AppController::saveLastSeenFrame() {
  const auto frame = windowMode ? windowMode->lastSeenBounds() : std::nullopt;
  if (frame) saveWindow(*frame);
}

void AppController::saveWindow(const WindowSettings& window) {
  try {
    configStore->saveWindow(window);
  } catch (const std::exception& error) {
    // The window opens elsewhere next time, which is not worth an alert.
    platform.log.write(std::string("Velmor: the window's place was not saved: ") + error.what());
  }
}

void AppController::restoreWindow() {
  if (windowMode) windowMode->restore();
}

void AppController::bringToFront() {
  if (!desktop) return;
  if (const auto window = mainWindow.lock()) {
    if (!window->native().isVisible()) window->orderFrontRegardless();
    window->makeKeyAndOrderFront();
  } else if (const auto other = desktop->windows.window(VelmorWindow::title)) {
    if (!other->isVisible()) other->orderFrontRegardless();
    other->makeKeyAndOrderFront();
  } else {
    return;
  }
  desktop->application.activateIgnoringOtherApps();
}

void AppController::minimize() {
  if (!desktop) return;
  if (const auto window = desktop->windows.window(VelmorWindow::title)) window->miniaturize();
}

} // namespace velmor
