#pragma once

#include "model/AppConfig.h"
#include "platform/Platform.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// Keeps the user's settings in memory and in "Velmor/config.json" below the application support
/// directory (platform/Environment.h). Folder and file are for the user alone (0700, 0600). It is
/// indented JSON with sorted keys and comes into being at the first save. Any thread may call.
class ConfigStore {
public:
  /// Reads the settings. A file that is missing, cannot be read or does not decode is passed over
  /// without a word and stays where it is until the next save; meanwhile the settings of an earlier
  /// release ("Mirexa/config.json") are taken over and saved, else the defaults hold.
  /// Throws FileError when the folder cannot be made or earlier settings cannot be saved.
  explicit ConfigStore(const Platform& platform);

  /// A copy of the settings, always normalised.
  [[nodiscard]] AppConfig current() const;

  /// Normalises a copy of `config`, replaces the file with it in one step and makes it current. A
  /// file in its place that cannot be read as settings is kept first, as "config.json.bad" (0600),
  /// in the place of an earlier one. Throws FileError or EncodingError; the current settings then
  /// stay what they were.
  void save(const AppConfig& config);

  /// Saves the window's frame and nothing else: all other settings are read from the file anew,
  /// since another run of Velmor or the user may have changed them there. Throws like `save`.
  void saveWindow(const WindowSettings& window);

  /// The API key to use with a model. OPENAI_API_KEY or TINKER_API_KEY in the environment, read
  /// anew each time, goes before the settings unless it is empty. "" when there is no key.
  [[nodiscard]] std::string apiKey(std::string_view model) const;

  enum class KeyOrigin { none, environment, settings };

  /// Where the key comes from that `apiKey` gives.
  [[nodiscard]] KeyOrigin keyOrigin(std::string_view model) const;

  /// The settings file, whether it exists or not.
  [[nodiscard]] const std::filesystem::path& location() const { return path; }

private:
  /// Keeps what lies in the place of the settings and is none. Throws FileError.
  void keepUnreadableFile();
  /// Nothing when the file is missing, cannot be read or does not decode.
  [[nodiscard]] std::optional<AppConfig> read(const std::filesystem::path& file) const;

  Platform platform;
  std::filesystem::path path;
  /// Guards `config` and the file, so that two saves never mix.
  mutable std::mutex lock;
  AppConfig config;
};

} // namespace velmor
