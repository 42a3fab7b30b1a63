#include "platform/linux/window/GtkStyle.h"

#include "platform/Window.h"
#include "platform/linux/glib/GlibHandles.h"

#include <gtk/gtk.h>

namespace velmor {

void GtkStyle::apply(_GtkWidget* widget, const std::string& rules) {
  const GlibPtr<GtkCssProvider> provider(gtk_css_provider_new());
  gtk_css_provider_load_from_data(provider.get(), rules.c_str(), -1, nullptr);
  gtk_style_context_add_provider(gtk_widget_get_style_context(widget),
                                 GTK_STYLE_PROVIDER(provider.get()),
                                 GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

std::string GtkStyle::text(const Color& color) {
  const GdkRGBA value{color.red, color.green, color.blue, color.alpha};
  return takeText(gdk_rgba_to_string(&value));
}

} // namespace velmor
