#include "platform/linux/window/GtkGlass.h"

#include <gtk/gtk.h>

namespace velmor {

GtkGlass::GtkGlass(_GtkOverlay* content, MenuHandler menuHandler)
    : onMenu(std::move(menuHandler)), box(gtk_event_box_new()) {
  gtk_event_box_set_visible_window(GTK_EVENT_BOX(box), FALSE);
  gtk_event_box_set_above_child(GTK_EVENT_BOX(box), TRUE);
  gtk_widget_add_events(box, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                 GDK_POINTER_MOTION_MASK | GDK_SCROLL_MASK);
  const auto press = [](GtkWidget*, GdkEvent* event, gpointer data) -> gboolean {
    return static_cast<GtkGlass*>(data)->pressed(event) ? TRUE : FALSE;
  };
  const auto motion = [](GtkWidget*, GdkEvent*, gpointer data) -> gboolean {
    return static_cast<GtkGlass*>(data)->moved() ? TRUE : FALSE;
  };
  const auto release = [](GtkWidget*, GdkEvent* event, gpointer data) -> gboolean {
    return static_cast<GtkGlass*>(data)->released(event->button.button) ? TRUE : FALSE;
  };
  const auto scroll = [](GtkWidget*, GdkEvent*, gpointer) -> gboolean { return TRUE; };
  signals.connect(box, "button-press-event", +press, this);
  signals.connect(box, "motion-notify-event", +motion, this);
  signals.connect(box, "button-release-event", +release, this);
  signals.connect(box, "scroll-event", +scroll, this);
  gtk_overlay_add_overlay(content, box);
}

void GtkGlass::setView(std::shared_ptr<OverlayView> laid) {
  view = std::move(laid);
  isDown = false;
  gtk_widget_set_visible(box, view ? TRUE : FALSE);
  if (!view) return;
  // Above what was added since.
  auto* const overlay = GTK_OVERLAY(gtk_widget_get_parent(box));
  gtk_overlay_reorder_overlay(overlay, box, -1);
}

bool GtkGlass::pressed(void* event) {
  if (!view) return false;
  auto* const press = static_cast<GdkEvent*>(event);
  const double height = gtk_widget_get_allocated_height(box);
  if (!view->hitTest({press->button.x, height - 1 - press->button.y})) return false;
  if (gdk_event_triggers_context_menu(press) != FALSE) {
    onMenu(press);
    return true;
  }
  if (press->type != GDK_BUTTON_PRESS || press->button.button != GDK_BUTTON_PRIMARY) return true;
  auto* const window = GTK_WINDOW(gtk_widget_get_toplevel(box));
  if (gtk_window_is_active(window) == FALSE && !view->acceptsFirstMouse()) return true;
  isDown = true;
  view->mouseDown();
  return true;
}

bool GtkGlass::moved() {
  if (!view) return false;
  if (isDown) view->mouseDragged();
  return true;
}

bool GtkGlass::released(unsigned button) {
  if (!view) return false;
  if (!isDown || button != GDK_BUTTON_PRIMARY) return true;
  isDown = false;
  // Kept alive, since a click takes the glass away.
  const auto clicked = view;
  clicked->mouseUp();
  return true;
}

} // namespace velmor
