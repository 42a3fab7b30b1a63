#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// The application's own files: its resources and the information that the build wrote down.
/// Safe to use from any thread.
class Bundle {
public:
  virtual ~Bundle() = default;

  /// The path of `name`.`extension` in the resource folder's `subdirectory` (its top level when
  /// empty); nothing when there is no such file.
  [[nodiscard]] virtual std::optional<std::filesystem::path>
  resource(std::string_view name, std::string_view extension,
           std::string_view subdirectory) const = 0;

  /// An information entry such as "CFBundleShortVersionString"; nothing when missing or not text.
  [[nodiscard]] virtual std::optional<std::string> informationEntry(std::string_view key) const = 0;
};

} // namespace velmor
