#pragma once

#include "platform/Geometry.h"
#include "platform/Window.h"
#include "platform/linux/glib/GlibHandles.h"

#include <functional>
#include <map>
#include <optional>
#include <set>

struct _cairo;
struct _GtkOverlay;
struct _GtkWidget;

namespace velmor {

/// The close and the minimise button, drawn over the page at the window's top left.
class GtkWindowButtons {
public:
  using Action = std::function<void()>;

  GtkWindowButtons(_GtkOverlay* content, Action close, Action miniaturize);

  void setHidden(WindowButton button, bool isHidden);
  /// What the window's style allows; a button shows when it is allowed and not hidden.
  void setStyleMask(unsigned mask);

  /// In the content view, origin at the bottom left.
  [[nodiscard]] std::optional<Rect> frame(WindowButton button) const;

private:
  using Draw = int (*)(_GtkWidget* area, _cairo* context, void* data);

  [[nodiscard]] _GtkWidget* addButton(_GtkWidget* box, Draw drawSign, const char* name,
                                      Action& action);
  void update();

  _GtkOverlay* overlay;
  Action onClose;
  Action onMiniaturize;
  std::map<WindowButton, _GtkWidget*> widgets;
  std::set<WindowButton> hidden;
  unsigned style = 0;
  SignalConnections signals;
};

} // namespace velmor
