#pragma once

#include "platform/Geometry.h"

#include <memory>
#include <optional>
#include <string>

namespace velmor {

class OverlayView;
class PageView;
struct WebViewConfiguration;

/// What a window looks like and offers, as bits of one number.
namespace styleMask {
inline constexpr unsigned borderless = 0;
inline constexpr unsigned titled = 1;
inline constexpr unsigned closable = 2;
inline constexpr unsigned miniaturizable = 4;
/// The content reaches to the edges, under the title bar.
inline constexpr unsigned fullSizeContentView = 0x8000;
} // namespace styleMask

/// How a window behaves among workspaces and other windows, as bits of one number.
namespace collectionBehavior {
inline constexpr unsigned canJoinAllSpaces = 1;
/// Left out when the user cycles through windows.
inline constexpr unsigned ignoresCycle = 64;
inline constexpr unsigned fullScreenAuxiliary = 256;
inline constexpr unsigned fullScreenNone = 512;
} // namespace collectionBehavior

/// Windows of a level over 0 stay above those of level 0.
namespace windowLevel {
inline constexpr int normal = 0;
inline constexpr int statusBar = 25;
} // namespace windowLevel

enum class WindowButton { Close, Miniaturize, Zoom };

/// Components from 0 to 1.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
  bool operator==(const Color&) const = default;
};

struct WindowAppearance {
  bool titlebarTransparent = false;
  bool titleHidden = false;
  bool opaque = true;
  Color background{1, 1, 1, 1};
  /// A drag on what does not handle the mouse moves the window.
  bool movableByBackground = false;
  bool operator==(const WindowAppearance&) const = default;
};

/// Hears what happens to a window, in the display lane.
class WindowDelegate {
public:
  virtual ~WindowDelegate() = default;

  /// Whether the window may close as the user wants; not asked when the program closes it.
  [[nodiscard]] virtual bool windowShouldClose() = 0;
  /// The window is about to go, whoever closed it; it can still be asked about itself.
  virtual void windowWillClose() = 0;
  virtual void windowDidResize() = 0;
};

/// A window of this application. Whatever its style, the borderless one included, it can become the
/// key and the main window: the one that has the keyboard. Main thread only.
class Window {
public:
  virtual ~Window() = default;

  virtual void setDelegate(std::weak_ptr<WindowDelegate> delegate) = 0;

  virtual void setTitle(const std::string& title) = 0;
  [[nodiscard]] virtual std::string title() const = 0;
  virtual void setAppearance(const WindowAppearance& appearance) = 0;
  /// Bits of `styleMask`.
  virtual void setStyleMask(unsigned mask) = 0;
  virtual void setLevel(int level) = 0;
  /// Bits of `collectionBehavior`.
  virtual void setCollectionBehavior(unsigned behavior) = 0;
  virtual void setButtonHidden(WindowButton button, bool hidden) = 0;
  /// A button's place in points in the content view; nothing when the window does not have it.
  [[nodiscard]] virtual std::optional<Rect> buttonFrame(WindowButton button) const = 0;

  /// The limits in points of what the user may make of the window; `setFrame` does not heed them.
  virtual void setMinimumSize(Size size) = 0;
  virtual void setMaximumSize(Size size) = 0;
  [[nodiscard]] virtual Size minimumSize() const = 0;

  /// Where the window is, or will be as soon as the system has carried out the last order.
  [[nodiscard]] virtual Rect frame() const = 0;
  virtual void setFrame(const Rect& frame) = 0;
  /// Moves to the middle of the main screen's visible frame.
  virtual void center() = 0;

  /// False before it is shown for the first time and after it was closed.
  [[nodiscard]] virtual bool isVisible() const = 0;
  [[nodiscard]] virtual bool isMiniaturized() const = 0;
  virtual void miniaturize() = 0;
  virtual void deminiaturize() = 0;
  virtual void close() = 0;

  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderFront() = 0;
  /// In front of other applications' windows of its level too, without taking the keyboard focus.
  virtual void orderFrontRegardless() = 0;

  /// Fills the content view with a web view.
  [[nodiscard]] virtual std::shared_ptr<PageView>
  addWebView(const WebViewConfiguration& configuration) = 0;
  /// Shows a text in the middle of the content view, white, with as many lines as it takes and at
  /// least `margin` points from each side. A second message takes the place of the first.
  virtual void showMessage(const std::string& message, double margin) = 0;
  /// Lays a transparent view over everything else in the window; null removes it.
  virtual void setOverlay(std::shared_ptr<OverlayView> view) = 0;
};

} // namespace velmor
