#pragma once

#include "platform/Application.h"
#include "platform/linux/glib/GlibHandles.h"

#include <vector>

struct _GtkAccelGroup;
struct _GtkWidget;
struct _GtkWindow;

namespace velmor {

/// The application's menu. A window without a menu bar shows it where the user asks for a context
/// menu; its keys work all the time.
class GtkMainMenu {
public:
  GtkMainMenu();

  void setItems(std::vector<MenuItem> entries);
  /// The keys of the menu work in this window from now on.
  void attach(_GtkWindow* window);
  /// `event` is the toolkit's, null for a menu that was asked for by key.
  void popUp(_GtkWidget* over, void* event);

private:
  void add(MenuItem& item);

  std::vector<MenuItem> items;
  GlibPtr<_GtkAccelGroup> keys;
  GlibPtr<_GtkWidget> menu;
  SignalConnections signals;
};

} // namespace velmor
