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

/// The window list of an X server's window manager: what is not minimised and no part of the
/// desktop itself.
class EwmhWindowList final : public WindowList {
public:
  [[nodiscard]] std::vector<WindowDescription> onScreen() override;
};

} // namespace velmor
