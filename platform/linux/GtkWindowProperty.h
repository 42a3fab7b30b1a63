#pragma once

#include <string>
#include <vector>

struct _GdkWindow;

namespace velmor {

/// Properties of windows, also of other programs', as the X server holds them. Main thread.
class GtkWindowProperty {
public:
  /// The identifiers of windows, or of atoms, that the property lists; none when it is missing or
  /// the window has gone.
  [[nodiscard]] static std::vector<unsigned long> list(_GdkWindow* window, const char* name);

  [[nodiscard]] static bool hasState(_GdkWindow* window, const char* name);
};

} // namespace velmor
