#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmor {

/// An entry of a menu; one without a title is a separator.
struct MenuItem {
  std::string title;
  /// The key that, with the system's command key, does the same; "" for none.
  std::string keyEquivalent;
  /// Called in the display lane.
  std::function<void()> action;
};

/// Hears what the desktop wants of the application, in the display lane.
class ApplicationDelegate {
public:
  virtual ~ApplicationDelegate() = default;

  [[nodiscard]] virtual bool applicationShouldTerminateAfterLastWindowClosed() = 0;
  /// The user has started the application again.
  virtual void applicationShouldHandleReopen() = 0;
  /// The connection to the display is lost. No window answers any more, and the process ends when
  /// this returns: what is worth keeping has to be saved now.
  virtual void applicationHasLostDisplay() = 0;
};

/// This application in the user's session. Main thread only.
class Application {
public:
  virtual ~Application() = default;

  /// True when it runs in this session already: that instance has been told to handle the start,
  /// and this one has nothing to do. Else this is the one instance from now on. Throws a
  /// std::runtime_error when the other instance does not answer within a few seconds.
  [[nodiscard]] virtual bool handOverToRunningInstance() = 0;

  /// A delegate that has gone is not told any more.
  virtual void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) = 0;
  /// Takes the place of the menu that was set before.
  virtual void setMainMenu(std::vector<MenuItem> items) = 0;
  /// Makes it the active application, whichever is active now; nothing without a visible window.
  virtual void activateIgnoringOtherApps() = 0;
  /// Shows an alert and goes on.
  virtual void showAlert(const std::string& message) = 0;
  /// Shows an alert and waits until the user has read it, or the application terminates.
  virtual void runAlert(const std::string& message) = 0;
};

} // namespace velmor
