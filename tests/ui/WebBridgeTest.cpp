#include "ui/WebBridge.h"

#include "base/Json.h"
#include "base/Text.h"
#include "tests/fakes/FakeMainLoop.h"
#include "tests/fakes/FakeMainWindowOwner.h"
#include "tests/fakes/FakeWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace velmor;
using Json = nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class WebBridgeTest : public testing::Test {
protected:
  WebBridgeTest() { bridge.setWebView(view); }

  /// Posts a message and gives the scripts to which it leads within the time.
  std::string post(const std::string& message, Seconds time = {}, const char* name = "velmor") {
    view->scripts.clear();
    bridge.didReceive(name, message);
    loop.advance(time);
    return text::joined(view->scripts, "");
  }

  std::string call(const std::string& method, const Json& args = Json::array()) {
    return post(Json{{"id", "1"}, {"method", method}, {"args", args}}.dump(), Seconds{11});
  }

  FakeMainLoop loop;
  std::shared_ptr<FakeMainWindowOwner> app = std::make_shared<FakeMainWindowOwner>(loop);
  std::shared_ptr<FakePageView> view = std::make_shared<FakePageView>();
  WebBridge bridge{loop, app};
};

std::string resolved(const Json& value = nullptr) {
  return "window.__velmorResolve(\"1\", " + value.dump() + ");";
}

std::string rejected(const std::string& message) {
  return "window.__velmorReject(\"1\", " + Json(message).dump() + ");";
}

} // namespace

TEST_F(WebBridgeTest, RunsEachCommandAndAnswersIt) {
  using Calls = std::vector<std::string>;
  const std::tuple<const char*, Json, Calls> cases[] = {
      {"GetSettings", app->config, {}},
      {"GetAppInfo", app->appInfo(), {}},
      {"GetState", AppState{.provider = "API key required"}, {}},
      {"CheckForUpdate", UpdateInfo{.current = "1.0.0", .offline = true}, {}},
      {"SuggestTracks", VisionResult{.notice = "Detected through rekordbox deck metadata."}, {}},
      {"StartAutoDetection", nullptr, {}},
      {"GetCrate", app->crateState(), {}},
      {"RestoreWindow", nullptr, {"restoreWindow", "bringToFront"}},
      {"StartCompactDrag", nullptr, {}},
      {"EndCompactDrag", nullptr, {}},
      {"BringToFront", nullptr, {"bringToFront"}},
      {"Quit", nullptr, {"quit"}},
      {"WindowMinimise", nullptr, {"minimize"}},
  };
  for (const auto& [method, answer, calls] : cases) {
    app->calls.clear();
    EXPECT_EQ(call(method, {1, 2}), resolved(answer)) << method;
    EXPECT_EQ(app->calls, calls) << method;
  }
  EXPECT_EQ(call("GetDetectedTrack"), resolved());
  app->detected = TrackMetadata{.song = "Glue", .artist = "Bicep"};
  EXPECT_EQ(call("GetDetectedTrack"), resolved(*app->detected));
  EXPECT_EQ(call("ShowAbout"), "window.__velmorEmit(\"velmor:show-about\", null);" + resolved());
  app->config.autoSuggestTracks = true;
  EXPECT_EQ(call("StartAutoDetection"), resolved());
  EXPECT_THAT(app->calls, ElementsAre("minimize", "startNowPlayingWatcher"));
}

TEST_F(WebBridgeTest, AsksTheCrate) {
  const Json one = {{"song", "S"}, {"artist", "A"}};
  const auto list = [](const Json& item) { return Json::array({item}); };
  EXPECT_EQ(call("LookUpInCrate", list(Json::array({one, one}))),
            resolved(Json::array({CrateEntry{"S", "A"}, nullptr})));
  EXPECT_EQ(call("LookUpInCrate", list(Json::array())), resolved(Json::array()));
  EXPECT_EQ(call("SuggestAfter", list(one)), resolved(VisionResult{.notice = "After A - S"}));
  EXPECT_EQ(call("ShowInFileManager", list("file:///m")), resolved());
  EXPECT_EQ(call("SetCrateKeys", list(false)), resolved());
  EXPECT_THAT(app->calls, ElementsAre("showInFileManager file:///m", "no keys"));
  const std::pair<const char*, Json> wrong[] = {
      {"LookUpInCrate", Json::array()},        {"LookUpInCrate", list(one)},
      {"LookUpInCrate", list(list("S"))},      {"LookUpInCrate", list(list({{"song", "S"}}))},
      {"SuggestAfter", Json::array()},         {"SuggestAfter", list("A - S")},
      {"SuggestAfter", list({{"song", "S"}})}, {"ShowInFileManager", list(7)},
      {"SetCrateKeys", list("false")}};
  for (const auto& [method, args] : wrong)
    EXPECT_EQ(call(method, args), rejected("Invalid arguments")) << method << args;
}

TEST_F(WebBridgeTest, ChecksArguments) {
  Json config = app->config;
  config["theme"] = "red";
  EXPECT_EQ(call("SaveSettings", {config, "ignored"}), resolved());
  EXPECT_EQ(app->config.theme, "red");
  auto incomplete = config;
  incomplete.erase("theme");
  for (const Json& args : {Json::array(), Json::array({"x"}), Json::array({incomplete}), Json("x")})
    EXPECT_EQ(call("SaveSettings", args), rejected("Invalid arguments")) << args;
  const std::string tooLong(10'001, 'x');
  config["aiModel"] = tooLong;
  EXPECT_EQ(call("SaveSettings", {config}), rejected("Invalid arguments"));
  for (const Json& args :
       {Json::array(), Json::array({42}), Json("https://x"), Json::array({tooLong})})
    EXPECT_EQ(call("BrowserOpenURL", args), rejected("Invalid arguments")) << args;
  EXPECT_EQ(call("getState"), rejected("Unknown method getState"));
}

TEST_F(WebBridgeTest, AnswersEveryMessageWhateverItsValues) {
  const auto deep = std::string(200'000, '[') + std::string(200'000, ']');
  const auto with = [&](const std::string& value) {
    auto config = app->config;
    config.theme = "HERE";
    return text::replacingAll(Json(config).dump(), "\"HERE\"", value);
  };
  const std::pair<std::string, std::string> cases[] = {
      {R"("method":"BrowserOpenURL","args":["\ud800"])", "Invalid arguments"},
      {R"("method":"BrowserOpenURL","args":["x\\\udc00\ud800"])", "Invalid arguments"},
      {R"("method":"BrowserOpenURL","args":[)" + deep + "]", "Invalid arguments"},
      {R"("method":"SaveSettings","args":[)" + with("1e400") + "]", "Invalid arguments"},
      {R"("method":"SaveSettings","args":[)" + with("\"\\uDfff\"") + "]", "Invalid arguments"},
      {R"("method":"A\u0000B")", std::string("Unknown method A\0B", 18)},
      {R"("method":"\ud800")", "Unknown method \uFFFD"}};
  for (const auto& [members, expected] : cases)
    EXPECT_EQ(post(R"({"id":"1",)" + members + "}"), rejected(expected)) << members.substr(0, 99);
  auto config = Json(app->config);
  for (const auto* const member : {"recommendationCount", "version"}) {
    for (const auto* const number : {"18446744073709551618", "9223372036854775808", "-1e19"}) {
      config[member] = "HERE";
      EXPECT_EQ(post(R"({"id":"1","method":"SaveSettings","args":[)" +
                     text::replacingAll(config.dump(), "\"HERE\"", number) + "]}"),
                rejected("Invalid arguments"));
    }
    config = app->config;
  }
  // What a command does not take cannot hurt it.
  EXPECT_EQ(post(R"({"id":"1","method":"Quit","args":[-1.5E+999,)" + deep + R"(],"x":"\udbff"})"),
            resolved());
  EXPECT_EQ(post(R"({"id":"1","method":"BrowserOpenURL","args":["\ud83d\uDE00"]})"), resolved());
  EXPECT_THAT(app->calls, ElementsAre("quit", "openURL 😀"));
}

TEST_F(WebBridgeTest, IgnoresWhatIsNoMessage) {
  for (const auto* message :
       {R"({"method":"Quit"})", R"({"id":7,"method":"Quit"})", R"({"id":"7","method":null})", "[]",
        "{", "{\"id\":\"\xFF\",\"method\":\"Quit\"}"}) {
    EXPECT_EQ(post(message), "") << message;
  }
  const std::string whole = R"({"id":"7","method":"Quit"})";
  EXPECT_EQ(post(whole + std::string("\0{}", 3)), "");
  EXPECT_EQ(post(whole, {}, "other"), "");
  EXPECT_THAT(app->calls, IsEmpty());
}

TEST_F(WebBridgeTest, KeepsAnyTextWhole) {
  const std::string odd = "\"\\\u2028\u2029</script>\x01\n\t\x7F😀";
  const auto quoted = Json(odd).dump();
  EXPECT_EQ(post(R"({"id":)" + quoted + R"(,"method":"Quit"})"),
            "window.__velmorResolve(" + quoted + ", null);");
  EXPECT_EQ(call("BrowserOpenURL", {odd}), resolved());
  EXPECT_THAT(app->calls, ElementsAre("quit", "openURL " + odd));
  app->failure = odd;
  for (const auto* const method : {"SuggestTracks", "SaveSettings"})
    EXPECT_EQ(call(method, Json::array({app->config})), rejected(odd));
}

TEST_F(WebBridgeTest, AnswersOthersWhileOneWaits) {
  int ends = 0;
  bridge.whenIdle([&] { ++ends; });
  EXPECT_EQ(post(R"({"id":"slow","method":"SuggestTracks"})"), "");
  EXPECT_FALSE(bridge.isIdle());
  EXPECT_TRUE(call("Quit").starts_with(resolved() + "window.__velmorResolve(\"slow\""));
  EXPECT_TRUE(bridge.isIdle());
  EXPECT_EQ(ends, 1);
}

TEST_F(WebBridgeTest, SendsNothingThatCannotBeEncoded) {
  app->config.bpmTolerance = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(call("GetSettings"), "");
}

TEST_F(WebBridgeTest, PushesEventsWhileThereIsAView) {
  bridge.emit("velmor:compact-mode", "true");
  EXPECT_THAT(view->scripts, ElementsAre("window.__velmorEmit(\"velmor:compact-mode\", true);"));
  view.reset();
  bridge.emit("velmor:x", std::nullopt);
  bridge.didReceive("velmor", R"({"id":"1","method":"Quit"})");
  loop.runPending();
  EXPECT_THAT(app->calls, ElementsAre("quit"));
}
