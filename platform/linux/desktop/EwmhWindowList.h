#pragma once

#include "platform/WindowList.h"
#include "platform/linux/desktop/WindowProperties.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmor {

/// All windows of the window manager's client list, oldest first; empty, at once, without an X
/// server. Every call makes its own connection, so any thread may call.
[[nodiscard]] std::vector<EwmhClient> readEwmhClients();

/// The titles of a process's windows, oldest first, minimised or not. Like `readEwmhClients`.
[[nodiscard]] std::vector<std::string> readEwmhTitles(std::int32_t process);

/// The clients in the order of a `WindowList`, given the lowest first.
[[nodiscard]] std::vector<WindowDescription> frontFirst(std::vector<EwmhClient> stack);

/// The window list of an X server's window manager. A minimised program still plays: its window
/// counts.
class EwmhWindowList final : public WindowList {
public:
  [[nodiscard]] std::vector<WindowDescription> list() override;
};

} // namespace velmor
