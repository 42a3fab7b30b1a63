#pragma once

#include <string>

namespace velmor {

/// The user's desktop as a whole, and this application's place in it. Main thread only.
class Workspace {
public:
  virtual ~Workspace() = default;

  /// Opens the address with the default handler of its scheme, as one argument and never through a
  /// shell. Text that is not a URL (it has no scheme) does nothing.
  virtual void openURL(const std::string& url) = 0;

  /// Ends the application's event loop.
  virtual void terminate() = 0;
};

} // namespace velmor
