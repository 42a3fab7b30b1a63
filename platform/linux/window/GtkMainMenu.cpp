#include "platform/linux/window/GtkMainMenu.h"

#include <gtk/gtk.h>

namespace velmor {

GtkMainMenu::GtkMainMenu() : keys(gtk_accel_group_new()) {}

void GtkMainMenu::setItems(std::vector<MenuItem> entries) {
  signals.disconnect();
  if (menu) gtk_widget_destroy(menu.get());
  items = std::move(entries);
  menu = owned(gtk_menu_new());
  gtk_menu_set_accel_group(GTK_MENU(menu.get()), keys.get());
  for (auto& item : items)
    add(item);
}

void GtkMainMenu::add(MenuItem& item) {
  const bool separates = item.title.empty();
  auto* const entry =
      separates ? gtk_separator_menu_item_new() : gtk_menu_item_new_with_label(item.title.c_str());
  gtk_menu_shell_append(GTK_MENU_SHELL(menu.get()), entry);
  gtk_widget_show(entry);
  if (separates) return;
  const auto chosen = [](GtkMenuItem*, gpointer data) { static_cast<MenuItem*>(data)->action(); };
  signals.connect(entry, "activate", +chosen, &item);
  if (item.keyEquivalent.empty()) return;
  gtk_widget_add_accelerator(entry, "activate", keys.get(),
                             gdk_unicode_to_keyval(static_cast<guint32>(item.keyEquivalent[0])),
                             GDK_CONTROL_MASK, GTK_ACCEL_VISIBLE);
}

void GtkMainMenu::attach(_GtkWindow* window) {
  gtk_window_add_accel_group(window, keys.get());
}

void GtkMainMenu::popUp(_GtkWidget* over, void* event) {
  if (!menu) return;
  auto* const asked = static_cast<GdkEvent*>(event);
  const bool byMouse = asked && asked->type == GDK_BUTTON_PRESS;
  if (byMouse)
    gtk_menu_popup_at_pointer(GTK_MENU(menu.get()), asked);
  else
    gtk_menu_popup_at_widget(GTK_MENU(menu.get()), over, GDK_GRAVITY_NORTH_WEST,
                             GDK_GRAVITY_NORTH_WEST, asked);
}

} // namespace velmor
