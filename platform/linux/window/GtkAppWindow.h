#pragma once

#include "platform/Geometry.h"
#include "platform/MainLoop.h"
#include "platform/Window.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/window/GtkFrame.h"
#include "platform/linux/window/GtkFullScreenCompanion.h"
#include "platform/linux/window/GtkGlass.h"
#include "platform/linux/window/GtkPropertyWatch.h"
#include "platform/linux/window/GtkWindowButtons.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

struct _GdkWindow;
struct _GtkOverlay;
struct _GtkWidget;

namespace velmor {

class GtkMainMenu;
class WebKitPageView;
class WebKitProfile;
class WindowProperties;

/// A window made by the toolkit, without the window manager's decorations: turning those off and on
/// shifts a window, each window manager's in another way. What is drawn around the page instead is
/// drawn over it.
class GtkAppWindow final : public Window {
public:
  struct Context {
    MainLoop& loop;
    GtkMainMenu& menu;
    WebKitProfile& profile;
    const WindowProperties& properties;
    /// Called after a window has gone.
    std::function<void()> onClosed;
  };

  GtkAppWindow(const Context& surroundings, const Rect& content, unsigned mask);
  GtkAppWindow(const GtkAppWindow&) = delete;
  GtkAppWindow& operator=(const GtkAppWindow&) = delete;
  ~GtkAppWindow() override;

  void setDelegate(std::weak_ptr<WindowDelegate> heard) override { delegate = std::move(heard); }
  void setTitle(const std::string& text) override;
  [[nodiscard]] std::string title() const override { return name; }
  void setAppearance(const WindowAppearance& look) override;
  void setStyleMask(unsigned mask) override;
  void setLevel(int level) override;
  void setCollectionBehavior(unsigned behavior) override;
  void setButtonHidden(WindowButton button, bool hidden) override;
  [[nodiscard]] std::optional<Rect> buttonFrame(WindowButton button) const override;
  void setMinimumSize(Size size) override { minimum = size; }
  void setMaximumSize(Size) override {}
  [[nodiscard]] Size minimumSize() const override { return minimum; }
  [[nodiscard]] Rect frame() const override;
  void setFrame(const Rect& wanted) override;
  void center() override;
  [[nodiscard]] bool isVisible() const override { return shown; }
  [[nodiscard]] bool isMiniaturized() const override;
  void miniaturize() override;
  void deminiaturize() override;
  void close() override;
  void makeKeyAndOrderFront() override;
  void orderFront() override;
  void orderFrontRegardless() override;
  [[nodiscard]] std::shared_ptr<PageView>
  addWebView(const WebViewConfiguration& configuration) override;
  void showMessage(const std::string& message, double margin) override;
  void setOverlay(std::shared_ptr<OverlayView> view) override { glass.setView(std::move(view)); }

  /// Gives it the keyboard focus.
  void activate();

private:
  [[nodiscard]] _GdkWindow* surface() const;
  void connectSignals();
  /// What the window's own button and the window manager do.
  void closeIfAllowed();
  void stateChanged(unsigned changed, unsigned state);
  void sizeChanged();
  void show();
  void comeBack();
  void parted();
  void present();
  void stayFindable();
  void setLeftOut(bool leftOut);
  void keepMinimisable();

  Context context;
  std::string name;
  GlibPtr<_GtkWidget> window;
  _GtkOverlay* overlay;
  _GtkWidget* message = nullptr;
  unsigned style;
  Size minimum;
  Color background{1, 1, 1, 1};
  bool movable = false;
  bool isAbove = false;
  std::weak_ptr<WindowDelegate> delegate;
  GtkWindowButtons buttons;
  GtkGlass glass;
  GtkFrame place;
  GtkFullScreenCompanion companion;
  std::shared_ptr<WebKitPageView> page;
  bool shown = false;
  /// Minimised by this program, of which the window manager knows nothing.
  bool putAway = false;
  /// Minimised, or hidden in another way, by the window manager.
  bool iconified = false;
  /// Asked to be left out of the taskbar, the pager and the switching between windows.
  bool wantsLeftOut = false;
  /// Without its entry in the taskbar this window manager would not minimise it.
  bool needsEntry = false;
  /// The window's own properties, from when it is first shown.
  std::optional<GtkPropertyWatch> ownProperties;
  /// Runs from the order to come back until the window manager has carried it out.
  std::unique_ptr<Timer> comingBack;
  /// Runs while the desktop is shown in place of the windows.
  std::unique_ptr<Timer> desktopShows;
  std::unique_ptr<Timer> iconComes;
  bool isClosing = false;
  Size reportedSize;
  SignalConnections signals;
};

} // namespace velmor
