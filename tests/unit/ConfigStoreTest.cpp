#include "model/ConfigStore.h"

#include "model/JsonCoding.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

using namespace velmor;
using Json = nlohmann::json;

namespace {

const auto configPath = "/home/dj/.config/Velmor/config.json";
const auto legacyPath = "/home/dj/.config/Mirexa/config.json";

Json configJson(const Json& changes) {
  AppConfig config;
  config.version = 8;
  Json json = config;
  json.merge_patch(changes);
  return json;
}

class ConfigStoreTest : public testing::Test {
protected:
  void put(const char* path, const Json& json) { system.files.files[path].bytes = json.dump(); }
  AppConfig loaded() { return ConfigStore(system.platform).current(); }

  FakePlatform system;
};

} // namespace

TEST_F(ConfigStoreTest, BeginsWithScaledDefaultsAndWritesNothing) {
  const auto config = loaded();
  EXPECT_EQ(config.version, 8);
  EXPECT_EQ(config.aiModel, "thinkingmachines/Inkling-Small");
  EXPECT_EQ(config.recommendationCount, 10);
  EXPECT_EQ(config.bpmTolerance, 10.0);
  EXPECT_EQ(config.theme, "light");
  EXPECT_FALSE(config.autoSuggestTracks);
  EXPECT_EQ(config.window, (WindowSettings{-1, -1, 507, 651}));
  EXPECT_TRUE(system.files.files.empty());
  EXPECT_EQ(system.files.folders.at("/home/dj/.config/Velmor"), 0700U);
}

TEST_F(ConfigStoreTest, MigratesAndClampsEveryField) {
  struct Case {
    Json stored;
    Json expected;
  };
  const Case cases[] = {
      {{{"version", 7}, {"window", {{"width", 900}, {"height", 900}}}},
       {{"version", 8}, {"window", {{"width", 1100}, {"height", 1100}}}}},
      {{{"version", 6}, {"window", {{"width", 300}, {"height", 400}}}},
       {{"window", {{"width", 376}, {"height", 495}}}}},
      {{{"version", 8}, {"window", {{"width", 300}, {"height", 400}}}},
       {{"window", {{"width", 461}, {"height", 592}}}}},
      {{{"version", 9}, {"window", {{"width", 400}, {"height", 500}}}},
       {{"version", 9}, {"window", {{"width", 400}, {"height", 500}}}}},
      {{{"version", 3}, {"window", {{"width", 900}, {"height", 900}}}, {"autoSuggestTracks", true}},
       {{"window", {{"width", 507}, {"height", 651}}}, {"autoSuggestTracks", false}}},
      {{{"version", 5}, {"theme", "dark"}, {"autoSuggestTracks", true}},
       {{"theme", "light"}, {"autoSuggestTracks", true}}},
      {{{"version", -4}, {"theme", "dark"}}, {{"version", 8}, {"theme", "light"}}},
      {{{"version", 6}, {"theme", "dark"}}, {{"theme", "dark"}}},
      {{{"theme", "Dark"}}, {{"theme", "light"}}},
      {{{"recommendationCount", 4}}, {{"recommendationCount", 10}}},
      {{{"recommendationCount", 3}}, {{"recommendationCount", 3}}},
      {{{"bpmTolerance", 0.5}}, {{"bpmTolerance", 10.0}}},
      {{{"bpmTolerance", 31}}, {{"bpmTolerance", 10.0}}},
      {{{"bpmTolerance", 30}}, {{"bpmTolerance", 30.0}}},
      {{{"aiModel", ""}}, {{"aiModel", "thinkingmachines/Inkling-Small"}}},
      {{{"aiModel", " "}}, {{"aiModel", " "}}},
  };
  for (const auto& [stored, expected] : cases) {
    put(configPath, configJson(stored));
    const Json result = loaded();
    auto merged = result;
    merged.merge_patch(expected);
    EXPECT_EQ(result, merged) << stored;
  }
  EXPECT_EQ(system.files.files.at(configPath).bytes, configJson({{"aiModel", " "}}).dump())
      << "reading must not write";
}

TEST_F(ConfigStoreTest, FallsBackToTheLegacyFile) {
  put(legacyPath, configJson({{"version", 6}, {"openaiApiKey", "old"}}));
  for (const auto* broken : {"", "{", "[]"}) {
    system.files.files[configPath].bytes = broken;
    EXPECT_EQ(loaded().openaiApiKey, "old");
    const auto written = Json::parse(system.files.files.at(configPath).bytes);
    EXPECT_EQ(written.at("version"), 8);
  }
  auto incomplete = configJson({{"openaiApiKey", "new"}});
  incomplete.erase("theme");
  put(configPath, incomplete);
  EXPECT_EQ(loaded().openaiApiKey, "old");
  EXPECT_TRUE(system.files.files.contains(legacyPath));
}

TEST_F(ConfigStoreTest, SavesNormalisedSortedAndPrivate) {
  ConfigStore store(system.platform);
  auto config = store.current();
  config.recommendationCount = 4;
  config.theme = "red";
  store.save(config);
  EXPECT_EQ(store.current().recommendationCount, 10);
  const auto& file = system.files.files.at(configPath);
  EXPECT_EQ(file.permissions, 0600U);
  EXPECT_EQ(file.bytes, Json::parse(file.bytes).dump(2));
  EXPECT_EQ(loaded(), store.current());
}

TEST_F(ConfigStoreTest, AFailedSaveChangesNothing) {
  ConfigStore store(system.platform);
  auto config = store.current();
  config.theme = "dark";
  system.files.permissionFailure = "no permission";
  EXPECT_THROW(store.save(config), FileError);
  EXPECT_EQ(store.current().theme, "light");
  system.files.writeFailure = "disk full";
  EXPECT_THROW(store.save(config), FileError);
  EXPECT_EQ(store.current().theme, "light");
  EXPECT_THROW(ConfigStore{system.platform}, FileError);
}

TEST_F(ConfigStoreTest, PrefersTheEnvironmentsKey) {
  put(configPath, configJson({{"openaiApiKey", "file-o"}, {"tinkerApiKey", "file-t"}}));
  const ConfigStore store(system.platform);
  EXPECT_EQ(store.apiKey(" GPT-4.1 "), "file-o");
  EXPECT_EQ(store.apiKey("some/model"), "file-t");
  system.environment.variables = {{"OPENAI_API_KEY", ""}, {"TINKER_API_KEY", " t "}};
  EXPECT_EQ(store.apiKey("gpt-5"), "file-o");
  EXPECT_EQ(store.apiKey("some/model"), " t ");
}
