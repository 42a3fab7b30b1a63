#include "platform/linux/window/GtkAppWindow.h"

#include "platform/linux/desktop/WindowProperties.h"
#include "platform/linux/page/WebKitPageView.h"
#include "platform/linux/window/GtkMainMenu.h"
#include "platform/linux/window/GtkScreens.h"
#include "platform/linux/window/GtkStyle.h"

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

namespace velmor {

namespace {

/// Long enough for the new size to arrive before the window does: it never flashes in the old one.
constexpr Seconds beforeComingBack{0.02};
/// Looking through the icon themes takes time that the page needs to come up.
constexpr Seconds afterFirstPicture{2};
/// A window manager that has not brought the window back by then is asked again.
constexpr Seconds longestComingBack{1};

/// Raises the window above the one that is topmost now. Some window managers take a plain raise as
/// a wish for the keyboard focus.
void raiseAboveTopmost(GdkWindow* surface, const WindowProperties& properties) {
  const auto stack = properties.stack();
  const auto own = gdk_x11_window_get_xid(surface);
  if (!stack.empty() && stack.back() == own) return;
  auto* const display = gdk_window_get_display(surface);
  XWindowChanges changes{};
  changes.stack_mode = Above;
  changes.sibling = stack.empty() ? None : stack.back();
  gdk_x11_display_error_trap_push(display);
  XReconfigureWMWindow(gdk_x11_display_get_xdisplay(display), own,
                       gdk_x11_screen_get_screen_number(gdk_window_get_screen(surface)),
                       stack.empty() ? CWStackMode : CWSibling | CWStackMode, &changes);
  gdk_x11_display_error_trap_pop_ignored(display);
}

bool isMappedOnServer(GdkWindow* surface) {
  auto* const display = gdk_window_get_display(surface);
  XWindowAttributes attributes{};
  gdk_x11_display_error_trap_push(display);
  const bool known = XGetWindowAttributes(gdk_x11_display_get_xdisplay(display),
                                          gdk_x11_window_get_xid(surface), &attributes) != 0;
  gdk_x11_display_error_trap_pop_ignored(display);
  return known && attributes.map_state != IsUnmapped;
}

GtkWindow* toplevel(const GlibPtr<_GtkWidget>& widget) {
  return GTK_WINDOW(widget.get());
}

} // namespace

GtkAppWindow::GtkAppWindow(const Context& surroundings, const Rect& content, unsigned mask)
    : context(surroundings)
    , window(owned(gtk_window_new(GTK_WINDOW_TOPLEVEL)))
    , overlay(GTK_OVERLAY(gtk_overlay_new()))
    , style(mask)
    , buttons(
          overlay, [this] { closeIfAllowed(); }, [this] { miniaturize(); })
    , glass(overlay, [this](void* event) { context.menu.popUp(window.get(), event); })
    , place(context.loop, toplevel(window), GtkScreens::toX(content))
    , companion(context.loop, context.properties, window.get(), [this] { parted(); }) {
  gtk_window_set_decorated(toplevel(window), FALSE);
  gtk_container_add(GTK_CONTAINER(window.get()), GTK_WIDGET(overlay));
  gtk_widget_show(GTK_WIDGET(overlay));
  context.menu.attach(toplevel(window));
  buttons.setStyleMask(mask);
  connectSignals();
  iconComes = context.loop.callLater(MainLoop::Lane::Display, afterFirstPicture, [this] {
    gtk_window_set_icon_name(toplevel(window), "velmor");
  });
}

GtkAppWindow::~GtkAppWindow() {
  signals.disconnect();
  page.reset();
  gtk_widget_destroy(window.get());
}

void GtkAppWindow::connectSignals() {
  const auto closing = [](GtkWidget*, GdkEvent*, gpointer data) -> gboolean {
    static_cast<GtkAppWindow*>(data)->closeIfAllowed();
    return TRUE;
  };
  const auto configured = [](GtkWidget*, GdkEvent*, gpointer data) -> gboolean {
    static_cast<GtkAppWindow*>(data)->place.configured();
    return FALSE;
  };
  const auto changed = [](GtkWidget*, GdkEvent* event, gpointer data) -> gboolean {
    const auto& state = event->window_state;
    static_cast<GtkAppWindow*>(data)->stateChanged(state.changed_mask, state.new_window_state);
    return FALSE;
  };
  const auto allocated = [](GtkWidget*, GdkRectangle*, gpointer data) {
    static_cast<GtkAppWindow*>(data)->sizeChanged();
  };
  signals.connect(window.get(), "delete-event", +closing, this);
  signals.connect(window.get(), "configure-event", +configured, this);
  signals.connect(window.get(), "window-state-event", +changed, this);
  signals.connect(window.get(), "size-allocate", +allocated, this, true);
}

_GdkWindow* GtkAppWindow::surface() const {
  return gtk_widget_get_window(window.get());
}

void GtkAppWindow::setTitle(const std::string& text) {
  name = text;
  gtk_window_set_title(toplevel(window), text.c_str());
}

void GtkAppWindow::setAppearance(const WindowAppearance& look) {
  movable = look.movableByBackground;
  if (page) page->setMovesWindow(movable);
  // Without a compositor nothing shines through a window: clear would be black.
  if (look.background.alpha == 0 || look.background == background) return;
  background = look.background;
  GtkStyle::apply(window.get(), "window { background: " + GtkStyle::text(background) + "; }");
  if (page) page->setBackground(background);
}

void GtkAppWindow::setStyleMask(unsigned mask) {
  style = mask;
  buttons.setStyleMask(mask);
}

void GtkAppWindow::setLevel(int level) {
  isAbove = level > windowLevel::normal;
  if (companion.hasOwner()) return;
  gtk_window_set_keep_above(toplevel(window), isAbove ? TRUE : FALSE);
}

void GtkAppWindow::setCollectionBehavior(unsigned behavior) {
  if (companion.hasOwner()) return;
  if ((behavior & collectionBehavior::canJoinAllSpaces) != 0)
    gtk_window_stick(toplevel(window));
  else
    gtk_window_unstick(toplevel(window));
  wantsLeftOut = (behavior & collectionBehavior::ignoresCycle) != 0;
  setLeftOut(wantsLeftOut && !needsEntry);
  companion.setEnabled((behavior & collectionBehavior::fullScreenAuxiliary) != 0);
}

void GtkAppWindow::setButtonHidden(WindowButton button, bool hidden) {
  buttons.setHidden(button, hidden);
}

std::optional<Rect> GtkAppWindow::buttonFrame(WindowButton button) const {
  return buttons.frame(button);
}

Rect GtkAppWindow::frame() const {
  return GtkScreens::fromX(place.current());
}

void GtkAppWindow::setFrame(const Rect& wanted) {
  place.order(GtkScreens::toX(wanted), iconified);
}

void GtkAppWindow::center() {
  const auto screens = GtkScreens::all();
  if (screens.empty()) return;
  const auto& area = screens.front().visibleFrame;
  auto centred = frame();
  centred.origin = {area.minX() + (area.width() - centred.width()) / 2,
                    area.minY() + (area.height() - centred.height()) / 2};
  setFrame(centred);
}

void GtkAppWindow::stateChanged(unsigned changed, unsigned state) {
  if ((changed & GDK_WINDOW_STATE_ICONIFIED) == 0) return;
  iconified = (state & GDK_WINDOW_STATE_ICONIFIED) != 0;
  if (!iconified) {
    comingBack.reset();
    desktopShows.reset();
    place.shownAgain();
    return;
  }
  if (companion.wentAlong())
    deminiaturize();
  else
    stayFindable();
}

/// Out of the taskbar and without a button, a minimised window could not be found again.
void GtkAppWindow::stayFindable() {
  desktopShows.reset();
  if (!iconified || (style & styleMask::miniaturizable) != 0) return;
  if (!context.properties.isShowingDesktop()) return deminiaturize();
  desktopShows = context.loop.callLater(MainLoop::Lane::Display, longestComingBack,
                                        [this] { stayFindable(); });
}

void GtkAppWindow::setLeftOut(bool leftOut) {
  const gboolean hint = leftOut ? TRUE : FALSE;
  gtk_window_set_skip_taskbar_hint(toplevel(window), hint);
  gtk_window_set_skip_pager_hint(toplevel(window), hint);
  if (!shown || !surface()) return;
  // The toolkit drops what it has said before; the window manager may have forgotten it.
  gdk_window_set_skip_taskbar_hint(surface(), hint);
  gdk_window_set_skip_pager_hint(surface(), hint);
}

/// Some window managers do not minimise what has no entry in the taskbar. The entry matters less.
void GtkAppWindow::keepMinimisable() {
  if (needsEntry || !wantsLeftOut || !surface()) return;
  needsEntry = !context.properties.canBeMinimised(
      static_cast<WindowProperties::Window>(gdk_x11_window_get_xid(surface())));
  if (needsEntry) setLeftOut(false);
}

void GtkAppWindow::sizeChanged() {
  const Size size{static_cast<double>(gtk_widget_get_allocated_width(window.get())),
                  static_cast<double>(gtk_widget_get_allocated_height(window.get()))};
  if (size == reportedSize) return;
  reportedSize = size;
  // Later, since widgets may not change while they are laid out.
  context.loop.post(MainLoop::Lane::Display, [heard = delegate] {
    if (const auto told = heard.lock()) told->windowDidResize();
  });
}

bool GtkAppWindow::isMiniaturized() const {
  if (putAway) return true;
  // Windows that only make way for the desktop come back as they were.
  return iconified && !comingBack && !context.properties.isShowingDesktop();
}

/// Without the window manager: some do not minimise at all, and some do not show the window again.
void GtkAppWindow::miniaturize() {
  if (shown && (style & styleMask::miniaturizable) != 0) putAway = true;
}

void GtkAppWindow::deminiaturize() {
  putAway = false;
  if (!iconified) return;
  comingBack =
      context.loop.callLater(MainLoop::Lane::Display, beforeComingBack, [this] { comeBack(); });
}

void GtkAppWindow::comeBack() {
  // Where minimised windows stay mapped, for pictures of them, mapping it again tells nobody
  // anything. To activate it does, but takes the keyboard focus.
  const bool mustActivate = isMappedOnServer(surface());
  gtk_window_deiconify(toplevel(window));
  if (mustActivate) present();
  comingBack = context.loop.callLater(MainLoop::Lane::Display, longestComingBack, [this] {
    comingBack.reset();
    if (!iconified) return;
    present();
    deminiaturize();
  });
}

/// It may have been put away with the window that it belonged to without a word, and its place
/// above others may be forgotten.
void GtkAppWindow::parted() {
  gtk_window_set_keep_above(toplevel(window), isAbove ? TRUE : FALSE);
  if (!shown || iconified || isMappedOnServer(surface())) return;
  // Not minimised by itself, it is not asked back so; but on which workspaces it is makes the
  // window manager think again about what it shows.
  gtk_window_unstick(toplevel(window));
  gtk_window_stick(toplevel(window));
}

void GtkAppWindow::show() {
  shown = true;
  gtk_widget_show(window.get());
  if (ownProperties) return;
  ownProperties.emplace(surface(), [this](std::string_view property) {
    if (property == "_NET_WM_ALLOWED_ACTIONS") keepMinimisable();
  });
}

void GtkAppWindow::makeKeyAndOrderFront() {
  if (isClosing) return;
  if (!shown) show();
  deminiaturize();
  activate();
}

void GtkAppWindow::activate() {
  if (shown && !iconified && surface()) present();
}

void GtkAppWindow::present() {
  gtk_window_present_with_time(toplevel(window), gdk_x11_get_server_time(surface()));
}

void GtkAppWindow::orderFront() {
  orderFrontRegardless();
}

void GtkAppWindow::orderFrontRegardless() {
  if (isClosing) return;
  if (!shown) show();
  if (!iconified && surface()) raiseAboveTopmost(surface(), context.properties);
}

void GtkAppWindow::closeIfAllowed() {
  const auto asked = delegate.lock();
  if (!asked || asked->windowShouldClose()) close();
}

void GtkAppWindow::close() {
  if (isClosing) return;
  isClosing = true;
  if (const auto told = delegate.lock()) told->windowWillClose();
  shown = false;
  gtk_widget_hide(window.get());
  context.onClosed();
}

std::shared_ptr<PageView> GtkAppWindow::addWebView(const WebViewConfiguration& configuration) {
  page = std::make_shared<WebKitPageView>(
      context.loop, context.profile, configuration,
      WebKitPageView::Surroundings{
          .menu = [this](void* event) { context.menu.popUp(window.get(), event); },
          .window = {.frame = [this] { return frame(); },
                     .setFrame = [this](const Rect& moved) { setFrame(moved); }}});
  page->setBackground(background);
  page->setMovesWindow(movable);
  auto* const view = page->widget();
  gtk_container_add(GTK_CONTAINER(overlay), view);
  gtk_widget_show(view);
  gtk_widget_grab_focus(view);
  return page;
}

void GtkAppWindow::showMessage(const std::string& text, double margin) {
  if (!message) {
    message = gtk_label_new(nullptr);
    gtk_label_set_line_wrap(GTK_LABEL(message), TRUE);
    gtk_label_set_justify(GTK_LABEL(message), GTK_JUSTIFY_CENTER);
    GtkStyle::apply(message, "label { color: #ffffff; }");
    gtk_overlay_add_overlay(overlay, message);
    gtk_overlay_set_overlay_pass_through(overlay, message, TRUE);
    gtk_widget_set_halign(message, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(message, GTK_ALIGN_CENTER);
  }
  gtk_widget_set_margin_start(message, static_cast<int>(margin));
  gtk_widget_set_margin_end(message, static_cast<int>(margin));
  gtk_label_set_text(GTK_LABEL(message), text.c_str());
  gtk_widget_show(message);
}

} // namespace velmor
