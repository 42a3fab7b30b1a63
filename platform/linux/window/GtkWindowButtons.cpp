#include "platform/linux/window/GtkWindowButtons.h"

#include "platform/linux/window/GtkStyle.h"

#include <gtk/gtk.h>

#include <utility>

namespace velmor {

namespace {

/// Mid-grey reads on light and dark pages alike.
constexpr auto buttonStyle = R"(
.velmor-window-button {
  min-width: 20px; min-height: 20px; padding: 0; margin: 0;
  border: none; border-radius: 10px; box-shadow: none; text-shadow: none; outline: none;
  background: none; color: #808090;
}
.velmor-window-button:hover { background: #62626f; color: #ffffff; }
.velmor-window-button.close:hover { background: #c33c3c; }
)";

constexpr double signRadius = 3.5;
constexpr double lineWidth = 1.6;

/// The signs are lines and not letters: with those the first picture would wait for the fonts.
/// They fill a square from -1 to 1.
void cross(cairo_t* context) {
  cairo_move_to(context, -1, -1);
  cairo_line_to(context, 1, 1);
  cairo_move_to(context, -1, 1);
  cairo_line_to(context, 1, -1);
}

void dash(cairo_t* context) {
  cairo_move_to(context, -1, 0);
  cairo_line_to(context, 1, 0);
}

template <void (*sign)(cairo_t*)>
gboolean draw(GtkWidget* area, cairo_t* context, gpointer) {
  GdkRGBA color{};
  gtk_style_context_get_color(gtk_widget_get_style_context(area), gtk_widget_get_state_flags(area),
                              &color);
  gdk_cairo_set_source_rgba(context, &color);
  cairo_translate(context, gtk_widget_get_allocated_width(area) / 2.0,
                  gtk_widget_get_allocated_height(area) / 2.0);
  cairo_scale(context, signRadius, signRadius);
  sign(context);
  cairo_set_line_width(context, lineWidth / signRadius);
  cairo_stroke(context);
  return TRUE;
}

} // namespace

GtkWindowButtons::GtkWindowButtons(_GtkOverlay* content, Action close, Action miniaturize)
    : overlay(content), onClose(std::move(close)), onMiniaturize(std::move(miniaturize)) {
  auto* const box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 4);
  gtk_widget_set_halign(box, GTK_ALIGN_START);
  gtk_widget_set_valign(box, GTK_ALIGN_START);
  gtk_widget_set_margin_start(box, 8);
  gtk_widget_set_margin_top(box, 10);
  widgets[WindowButton::Close] = addButton(box, draw<cross>, "Close", onClose);
  widgets[WindowButton::Miniaturize] = addButton(box, draw<dash>, "Minimise", onMiniaturize);
  gtk_style_context_add_class(gtk_widget_get_style_context(widgets[WindowButton::Close]), "close");
  gtk_overlay_add_overlay(overlay, box);
  gtk_widget_show(box);
}

_GtkWidget* GtkWindowButtons::addButton(_GtkWidget* box, Draw drawSign, const char* name,
                                        Action& action) {
  auto* const button = gtk_button_new();
  auto* const area = gtk_drawing_area_new();
  signals.connect(area, "draw", drawSign, nullptr);
  gtk_container_add(GTK_CONTAINER(button), area);
  gtk_widget_show(area);
  gtk_widget_set_tooltip_text(button, name);
  atk_object_set_name(gtk_widget_get_accessible(button), name);
  // The keyboard belongs to the page.
  gtk_widget_set_can_focus(button, FALSE);
  gtk_style_context_add_class(gtk_widget_get_style_context(button), "velmor-window-button");
  GtkStyle::apply(button, buttonStyle);
  const auto clicked = [](GtkButton*, gpointer data) { (*static_cast<Action*>(data))(); };
  signals.connect(button, "clicked", +clicked, &action);
  gtk_container_add(GTK_CONTAINER(box), button);
  return button;
}

void GtkWindowButtons::setHidden(WindowButton button, bool isHidden) {
  if (isHidden)
    hidden.insert(button);
  else
    hidden.erase(button);
  update();
}

void GtkWindowButtons::setStyleMask(unsigned mask) {
  style = mask;
  update();
}

void GtkWindowButtons::update() {
  const auto show = [this](WindowButton button, unsigned needed) {
    const bool allowed = (style & needed) != 0 && !hidden.contains(button);
    gtk_widget_set_visible(widgets[button], allowed ? TRUE : FALSE);
  };
  show(WindowButton::Close, styleMask::closable);
  show(WindowButton::Miniaturize, styleMask::miniaturizable);
}

std::optional<Rect> GtkWindowButtons::frame(WindowButton button) const {
  const auto found = widgets.find(button);
  if (found == widgets.end() || gtk_widget_get_mapped(found->second) == FALSE) return std::nullopt;
  auto* const content = GTK_WIDGET(overlay);
  int x = 0;
  int y = 0;
  gtk_widget_translate_coordinates(found->second, content, 0, 0, &x, &y);
  const int width = gtk_widget_get_allocated_width(found->second);
  const int height = gtk_widget_get_allocated_height(found->second);
  const int bottom = gtk_widget_get_allocated_height(content) - y - height;
  return Rect{{static_cast<double>(x), static_cast<double>(bottom)},
              {static_cast<double>(width), static_cast<double>(height)}};
}

} // namespace velmor
