#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// A window on screen.
struct WindowDescription {
  /// The process that owns it; 0 when the window does not tell.
  std::int32_t ownerProcess = 0;
  /// The window's name; "" when the system withholds it.
  std::string name;
};

/// The windows of all applications.
class WindowList {
public:
  virtual ~WindowList() = default;

  /// The windows on screen, oldest first, without minimised ones and the desktop's own elements;
  /// empty when there is no window server. Any thread.
  [[nodiscard]] virtual std::vector<WindowDescription> onScreen() = 0;
};

} // namespace velmor
