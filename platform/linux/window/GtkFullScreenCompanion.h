#pragma once

#include "platform/MainLoop.h"
#include "platform/linux/desktop/WindowProperties.h"
#include "platform/linux/window/GtkPropertyWatch.h"

#include <memory>
#include <optional>

struct _GtkWidget;

namespace velmor {

/// Keeps a window in sight beside another program's full-screen window. Window managers may put
/// the full-screen window that has the focus above every window that is kept above others; but a
/// window that belongs to the full-screen one stays above it. Main thread.
class GtkFullScreenCompanion {
public:
  GtkFullScreenCompanion(MainLoop& mainLoop, const WindowProperties& windowProperties,
                         _GtkWidget* widget)
      : loop(mainLoop), properties(windowProperties), companion(widget) {}
  GtkFullScreenCompanion(const GtkFullScreenCompanion&) = delete;
  GtkFullScreenCompanion& operator=(const GtkFullScreenCompanion&) = delete;
  ~GtkFullScreenCompanion() { leave(); }

  void setEnabled(bool enabled);

  /// Belongs to no other window any more. False when it did not.
  bool leave();

private:
  void followSoon();
  void follow();
  void watch(WindowProperties::Window window);
  void join();
  [[nodiscard]] bool isCovered() const;

  MainLoop& loop;
  const WindowProperties& properties;
  _GtkWidget* companion;
  /// Set while it is enabled.
  std::optional<GtkPropertyWatch> desktop;
  /// The window that had the focus last, when it is not the companion.
  std::optional<GtkPropertyWatch> other;
  bool hasJoined = false;
  std::unique_ptr<Timer> pending;
};

} // namespace velmor
