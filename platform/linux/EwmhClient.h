#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// A top-level window that the window manager looks after.
struct EwmhClient {
  /// 0 when the window does not tell.
  std::int32_t process = 0;
  /// The title in UTF-8; "" when there is none.
  std::string title;
  /// The class of WM_CLASS; "" when there is none.
  std::string windowClass;
  /// Minimised, or hidden in another way. It keeps its title.
  bool hidden = false;
  /// A desktop background, a panel or the like.
  bool belongsToDesktop = false;
};

/// All windows of the window manager's client list, oldest first; empty, at once, without an X
/// server. Every call makes its own connection, so any thread may call.
[[nodiscard]] std::vector<EwmhClient> readEwmhClients();

/// The titles of a process's windows, oldest first, minimised or not.
[[nodiscard]] std::vector<std::string> readEwmhTitles(std::int32_t process);

} // namespace velmor
