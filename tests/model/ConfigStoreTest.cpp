#include "model/ConfigStore.h"

#include "base/Json.h"
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
  const AppConfig defaults{.version = 8,
                           .aiModel = "thinkingmachines/Inkling-Small",
                           .recommendationCount = 10,
                           .bpmTolerance = 10,
                           .autoSuggestTracks = false,
                           .theme = "light",
                           .window = {-1, -1, 507, 651}};
  EXPECT_EQ(loaded(), defaults);
  EXPECT_TRUE(system.files.files.empty());
  EXPECT_EQ(system.files.folders.at("/home/dj/.config/Velmor"), 0700U);
}

TEST_F(ConfigStoreTest, MigratesAndClampsEveryField) {
  const auto size = [](int width, int height) {
    return Json{{"width", width}, {"height", height}};
  };
  const std::pair<Json, Json> cases[] = {
      {{{"version", 7}, {"window", size(900, 900)}},
       {{"version", 8}, {"window", size(1100, 1100)}}},
      {{{"version", 6}, {"window", size(300, 400)}}, {{"window", size(376, 495)}}},
      {{{"version", 8}, {"window", size(300, 400)}}, {{"window", size(461, 592)}}},
      {{{"version", 9}, {"window", size(400, 500)}}, {{"version", 9}, {"window", size(400, 500)}}},
      {{{"version", 3}, {"window", size(900, 900)}, {"autoSuggestTracks", true}},
       {{"window", size(507, 651)}, {"autoSuggestTracks", false}}},
      {{{"version", 5}, {"theme", "dark"}, {"autoSuggestTracks", true}},
       {{"theme", "light"}, {"autoSuggestTracks", true}}},
      {{{"version", 4}, {"autoSuggestTracks", true}}, {{"autoSuggestTracks", false}}},
      {{{"version", 6}, {"theme", "dark"}}, {{"theme", "dark"}}},
      {{{"theme", "Dark"}}, {{"theme", "light"}}},
      {{{"recommendationCount", 4}}, {{"recommendationCount", 10}}},
      {{{"bpmTolerance", 0.5}}, {{"bpmTolerance", 10.0}}},
      {{{"bpmTolerance", 31}}, {{"bpmTolerance", 10.0}}},
      {{{"version", 2}, {"theme", "dark"}}, {{"version", 8}, {"theme", "light"}}},
      {{{"bpmTolerance", 30}}, {{"bpmTolerance", 30.0}}},
      {{{"bpmTolerance", 1}}, {{"bpmTolerance", 1.0}}},
      {{{"bpmTolerance", 30.01}}, {{"bpmTolerance", 10.0}}},
      {{{"aiModel", ""}}, {{"aiModel", "thinkingmachines/Inkling-Small"}}},
  };
  for (const auto& [stored, expected] : cases) {
    put(configPath, configJson(stored));
    const Json result = loaded();
    auto merged = result;
    merged.merge_patch(expected);
    EXPECT_EQ(result, merged) << stored;
    EXPECT_EQ(system.files.files.at(configPath).bytes, configJson(stored).dump())
        << "reading must not write";
  }
}

TEST_F(ConfigStoreTest, FallsBackToTheLegacyFile) {
  put(legacyPath, configJson({{"version", 6}, {"openaiApiKey", "old"}}));
  auto incomplete = configJson({{"openaiApiKey", "new"}});
  incomplete.erase("theme");
  for (const auto& broken : {std::string("{"), std::string("[]"), incomplete.dump()}) {
    system.files.files[configPath].bytes = broken;
    EXPECT_EQ(loaded().openaiApiKey, "old");
    EXPECT_EQ(Json::parse(system.files.files.at(configPath).bytes).at("version"), 8);
  }
  EXPECT_TRUE(system.files.files.contains(legacyPath));
}

TEST_F(ConfigStoreTest, SavesSortedAndIndented) {
  ConfigStore store(system.platform);
  store.save({.version = 8, .recommendationCount = 4});
  const auto& bytes = system.files.files.at(configPath).bytes;
  EXPECT_EQ(bytes, Json::parse(bytes).dump(2));
  EXPECT_EQ(system.files.files.at(configPath).permissions, 0600U);
  EXPECT_EQ(loaded(), store.current());
}

TEST_F(ConfigStoreTest, AFailedSaveChangesNothing) {
  ConfigStore store(system.platform);
  auto config = store.current();
  config.theme = "dark";
  for (auto* const failure : {&system.files.permissionFailure, &system.files.writeFailure}) {
    *failure = "disk full";
    EXPECT_THROW(store.save(config), FileError);
    EXPECT_EQ(store.current().theme, "light");
  }
  EXPECT_THROW(ConfigStore{system.platform}, FileError);
}

TEST_F(ConfigStoreTest, ChangesOnlyTheFrameOfWhatOthersHaveSavedMeanwhile) {
  ConfigStore open(system.platform);
  const WindowSettings frame{1, 2, 400, 500};
  open.saveWindow(frame);
  EXPECT_EQ(loaded().window, frame);
  put(configPath, configJson({{"tinkerApiKey", "new"}, {"theme", "red"}}));
  open.saveWindow({3, 4, 400, 500});
  const AppConfig merged = Json::parse(system.files.files.at(configPath).bytes);
  EXPECT_EQ(std::tie(merged.tinkerApiKey, merged.theme, merged.window.x),
            std::tuple("new", "red", 3));
  EXPECT_EQ(open.current(), merged);
}

TEST_F(ConfigStoreTest, KeepsOneCopyOfAFileThatIsNoSettings) {
  const auto kept = std::string(configPath) + ".bad";
  ConfigStore store(system.platform);
  const std::tuple<const char*, unsigned, const char*> cases[] = {
      {"{\"tinkerApiKey\": \"tk\",", 0644, "{\"tinkerApiKey\": \"tk\","},
      {"", 0644, "{\"tinkerApiKey\": \"tk\","},
      {"not to be read", 0, "not to be read"}};
  for (const auto& [bytes, permissions, expected] : cases) {
    system.files.files[configPath] = {bytes, permissions};
    store.saveWindow({});
    EXPECT_EQ(system.files.files.at(kept).bytes, expected);
    EXPECT_EQ(system.files.files.at(kept).permissions, 0600U);
    EXPECT_EQ(loaded(), store.current());
  }
  store.saveWindow({});
  EXPECT_EQ(system.files.files.at(kept).bytes, "not to be read") << "settings are no reason";
}

TEST_F(ConfigStoreTest, PrefersTheEnvironmentsKey) {
  put(configPath, configJson({{"openaiApiKey", "file-o"}, {"tinkerApiKey", "file-t"}}));
  ConfigStore store(system.platform);
  EXPECT_EQ(store.apiKey(" GPT-4.1 "), "file-o");
  EXPECT_EQ(store.apiKey("some/model"), "file-t");
  system.environment.variables = {{"OPENAI_API_KEY", ""}, {"TINKER_API_KEY", " t "}};
  EXPECT_EQ(store.apiKey("gpt-5"), "file-o");
  EXPECT_EQ(store.apiKey("some/model"), " t ");
  using Origin = ConfigStore::KeyOrigin;
  EXPECT_EQ(store.keyOrigin("some/model"), Origin::environment);
  EXPECT_EQ(store.keyOrigin("gpt-5"), Origin::settings);
  store.save({});
  EXPECT_EQ(store.keyOrigin("gpt-5"), Origin::none);
}
