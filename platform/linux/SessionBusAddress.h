#pragma once

#include <optional>
#include <string>

namespace velmor {

class Environment;

/// The address of the user's session bus; nothing when none runs. Asking GDBus instead would start
/// a new, empty bus and leave it behind.
[[nodiscard]] std::optional<std::string> sessionBusAddress(const Environment& environment);

} // namespace velmor
