#pragma once

#include "platform/MainLoop.h"
#include "platform/linux/desktop/WindowProperties.h"
#include "platform/linux/window/GtkPropertyWatch.h"

#include <memory>
#include <optional>
#include <utility>

struct _GtkWidget;

namespace velmor {

/// Keeps a window in sight beside another program's full-screen window. Window managers may put
/// the full-screen window that has the focus above every window that is kept above others; but a
/// window that belongs to the full-screen one stays above it. What is asked for a window that
/// belongs to another may be done to both: so it belongs to it only while the other one has the
/// focus, and nothing is to be asked for it meanwhile. Main thread.
class GtkFullScreenCompanion {
public:
  /// `whenParted` is called when the companion has left a window, and again a moment later: some
  /// window managers forget then what it had asked for.
  GtkFullScreenCompanion(MainLoop& mainLoop, const WindowProperties& windowProperties,
                         _GtkWidget* widget, MainLoop::Work whenParted)
      : loop(mainLoop)
      , properties(windowProperties)
      , companion(widget)
      , onParted(std::move(whenParted)) {}
  GtkFullScreenCompanion(const GtkFullScreenCompanion&) = delete;
  GtkFullScreenCompanion& operator=(const GtkFullScreenCompanion&) = delete;
  ~GtkFullScreenCompanion();

  void setEnabled(bool enabled);

  /// It belongs to another program's window at the moment.
  [[nodiscard]] bool hasOwner() const { return hasJoined; }

  /// To be asked when the companion was minimised: the full-screen window was, and took it along.
  /// From then on it belongs to no other window.
  [[nodiscard]] bool wentAlong();

private:
  void followSoon();
  void follow();
  void watch(WindowProperties::Window window);
  void join();
  /// Belongs to no other window any more.
  void leave();
  void partFromOther();
  [[nodiscard]] bool isCovered() const;

  MainLoop& loop;
  const WindowProperties& properties;
  _GtkWidget* companion;
  MainLoop::Work onParted;
  /// Set while it is enabled.
  std::optional<GtkPropertyWatch> desktop;
  /// The window that had the focus last, when it is not the companion.
  std::optional<GtkPropertyWatch> other;
  bool hasJoined = false;
  std::unique_ptr<Timer> pending;
  /// Runs for a moment after the other window has lost the focus: it may just be minimised.
  std::unique_ptr<Timer> parting;
  /// Runs for a moment after the companion has left, whoever has the focus then.
  std::unique_ptr<Timer> settling;
};

} // namespace velmor
