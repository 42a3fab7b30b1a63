#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velmor {

/// The names of a running process.
struct ProcessNames {
  /// The base name of the executable file; "" when it is not ours to see.
  std::string program;
  /// The name that the process goes by, at most 15 bytes: the start of the program's name, unless
  /// it is a script or has chosen another.
  std::string shown;

  /// Whether the process goes by another name than its program's, as scripts do.
  [[nodiscard]] bool areDifferent() const;

  /// Nothing when the process does not run any more.
  [[nodiscard]] static std::optional<ProcessNames> of(std::int32_t process);
};

} // namespace velmor
