#pragma once

#include <string>

struct _GtkWidget;

namespace velmor {

struct Color;

/// How widgets look, in the toolkit's style sheets. Main thread.
namespace GtkStyle {

/// Gives this one widget the rules of a style sheet, above the theme's.
void apply(_GtkWidget* widget, const std::string& rules);

/// A colour as style sheets write it.
[[nodiscard]] std::string text(const Color& color);

} // namespace GtkStyle

} // namespace velmor
