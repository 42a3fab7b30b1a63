#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// The process environment and the user's standard folders. Safe to use from any thread.
class Environment {
public:
  virtual ~Environment() = default;

  /// The variable's value, which may be empty; nothing when it is not set. Read anew at each call.
  [[nodiscard]] virtual std::optional<std::string> variable(std::string_view name) const = 0;

  /// Absolute, like the other folders.
  [[nodiscard]] virtual std::filesystem::path homeDirectory() const = 0;

  /// Where applications keep their settings, each in a folder of its own. It need not exist yet.
  [[nodiscard]] virtual std::filesystem::path applicationSupportDirectory() const = 0;

  /// Where applications keep what they can make anew. It need not exist yet.
  [[nodiscard]] virtual std::filesystem::path cacheDirectory() const = 0;

  /// The user's music; nothing when the user has chosen to have no such folder. It need not exist.
  [[nodiscard]] virtual std::optional<std::filesystem::path> musicDirectory() const = 0;

  /// For files that nobody needs after this run.
  [[nodiscard]] virtual std::filesystem::path temporaryDirectory() const = 0;
};

} // namespace velmor
