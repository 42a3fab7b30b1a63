#pragma once

#include <filesystem>
#include <string>

namespace velmor {

/// The user's desktop as a whole, and this application's place in it. Main thread only.
class Workspace {
public:
  virtual ~Workspace() = default;

  /// Opens the address with the default handler of its scheme, as one argument and never through a
  /// shell. Text that is not a URL (it has no scheme) does nothing. A failure, such as a scheme
  /// that no program handles, goes to the system's log.
  virtual void openURL(const std::string& url) = 0;

  /// Opens the file manager at this file, or at its folder when the file manager can do no more. A
  /// failure goes to the system's log.
  virtual void showInFileManager(const std::filesystem::path& file) = 0;

  /// The application is about to be terminated: within three seconds from the first such call the
  /// process ends, whatever still hangs.
  virtual void willTerminate() = 0;

  /// Ends the application's event loop, and every blocking wait of the seam at once. Begins with
  /// `willTerminate`.
  virtual void terminate() = 0;

  /// True once `terminate` has been called: nothing may be told to the page any more. Any thread.
  [[nodiscard]] virtual bool isTerminating() const = 0;
};

} // namespace velmor
