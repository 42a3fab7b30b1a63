#include "model/ConfigStore.h"

#include "model/JsonCoding.h"
#include "model/ModelProvider.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"

namespace velmor {

namespace {

constexpr unsigned privateFolder = 0700;
constexpr unsigned privateFile = 0600;

std::string encoded(const AppConfig& config) {
  return nlohmann::json(config).dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
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
  const std::string bytes = encoded(next);
  const std::lock_guard guard(lock);
  platform.files.writeAtomically(path, bytes);
  platform.files.setPermissions(path, privateFile);
  config = next;
}

std::string ConfigStore::apiKey(std::string_view model) const {
  const bool openAI = modelProvider(model) == ModelProvider::OpenAI;
  const auto fromEnvironment =
      platform.environment.variable(openAI ? "OPENAI_API_KEY" : "TINKER_API_KEY");
  if (fromEnvironment && !fromEnvironment->empty()) return *fromEnvironment;
  const std::lock_guard guard(lock);
  return openAI ? config.openaiApiKey : config.tinkerApiKey;
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
