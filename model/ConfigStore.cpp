#include "model/ConfigStore.h"

#include "base/Json.h"
#include "model/ModelProvider.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"

namespace velmor {

namespace {

constexpr unsigned privateFolder = 0700;
constexpr unsigned privateFile = 0600;

/// "" when the environment has none.
std::string environmentKey(const Platform& platform, std::string_view model) {
  if (modelProvider(model) == ModelProvider::Crate) return "";
  const bool openAI = modelProvider(model) == ModelProvider::OpenAI;
  return platform.environment.variable(openAI ? "OPENAI_API_KEY" : "TINKER_API_KEY").value_or("");
}

} // namespace

ConfigStore::ConfigStore(const Platform& thePlatform) : platform(thePlatform) {
  const auto support = platform.environment.applicationSupportDirectory();
  platform.files.createFolder(support / "Velmor", privateFolder);
  path = support / "Velmor" / "config.json";
  if (auto stored = read(path)) {
    config = *stored;
  } else if (const auto legacy = read(support / "Mirexa" / "config.json")) {
    save(*legacy);
  }
  config.normalise();
}

AppConfig ConfigStore::current() const {
  const std::lock_guard guard(lock);
  return config;
}

void ConfigStore::save(const AppConfig& wanted) {
  AppConfig next = wanted;
  next.normalise();
  const std::string bytes = jsonEncoder().encodeIndented(next);
  const std::lock_guard guard(lock);
  keepUnreadableFile();
  platform.files.writeAtomically(path, bytes);
  platform.files.setPermissions(path, privateFile);
  config = next;
}

void ConfigStore::saveWindow(const WindowSettings& window) {
  AppConfig next = read(path).value_or(current());
  next.normalise();
  next.window = window;
  save(next);
}

void ConfigStore::keepUnreadableFile() {
  if (!platform.files.exists(path) || read(path)) return;
  auto kept = path;
  kept += ".bad";
  const auto bytes = platform.files.read(path);
  if (!bytes) {
    platform.files.move(path, kept);
    platform.files.setPermissions(kept, privateFile);
  } else if (!bytes->empty()) {
    platform.files.writeAtomically(kept, *bytes);
  }
}

std::string ConfigStore::apiKey(std::string_view model) const {
  if (auto key = environmentKey(platform, model); !key.empty()) return key;
  const auto provider = modelProvider(model);
  if (provider == ModelProvider::Crate) return "";
  const std::lock_guard guard(lock);
  return provider == ModelProvider::OpenAI ? config.openaiApiKey : config.tinkerApiKey;
}

ConfigStore::KeyOrigin ConfigStore::keyOrigin(std::string_view model) const {
  if (!environmentKey(platform, model).empty()) return KeyOrigin::environment;
  return apiKey(model).empty() ? KeyOrigin::none : KeyOrigin::settings;
}

std::optional<AppConfig> ConfigStore::read(const std::filesystem::path& file) const {
  const auto bytes = platform.files.read(file);
  if (!bytes) return std::nullopt;
  try {
    return jsonDecoder().decode<AppConfig>(*bytes);
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

} // namespace velmor
