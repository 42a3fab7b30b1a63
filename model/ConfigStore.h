#pragma once

#include "model/AppConfig.h"
#include "platform/Platform.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <string_view>

namespace velmor {

/// Keeps the user's settings in memory and in their file. Any thread may call it.
class ConfigStore {
public:
  /// Reads the settings, those of an earlier release if there are no newer ones, else begins with
  /// the defaults. A file that cannot be read or decoded stays where it is until the next save.
  /// Throws FileError when the folder cannot be made or earlier settings cannot be taken over.
  explicit ConfigStore(const Platform& platform);

  /// A copy of the settings, always normalised.
  [[nodiscard]] AppConfig current() const;

  /// Normalises a copy of `config`, writes it and makes it current. Throws FileError or
  /// EncodingError; the current settings then stay what they were.
  void save(const AppConfig& config);

  /// The key to use with a model: the environment's when it has one, else the configured one;
  /// "" when there is none.
  [[nodiscard]] std::string apiKey(std::string_view model) const;

  enum class KeyOrigin { none, environment, settings };

  /// Where the key comes from that `apiKey` gives.
  [[nodiscard]] KeyOrigin keyOrigin(std::string_view model) const;

  [[nodiscard]] const std::filesystem::path& location() const { return path; }

private:
  [[nodiscard]] std::optional<AppConfig> read(const std::filesystem::path& file) const;

  Platform platform;
  std::filesystem::path path;
  mutable std::mutex lock;
  AppConfig config;
};

} // namespace velmor
