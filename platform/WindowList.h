#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// A window of an application, minimised or not.
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

  /// The windows, the one in front first and minimised ones last, as far as the system still knows
  /// those; without the desktop's own elements. Empty when there is no window server. Any thread.
  [[nodiscard]] virtual std::vector<WindowDescription> list() = 0;
};

} // namespace velmor
