#pragma once

#include "platform/Window.h"

#include <string>

struct _GtkWidget;

namespace velmor::GtkStyle {

/// Gives the widget rules of a style sheet, above the theme's.
void apply(_GtkWidget* widget, const std::string& rules);

/// A colour as style sheets write it.
[[nodiscard]] std::string text(const Color& color);

} // namespace velmor::GtkStyle
