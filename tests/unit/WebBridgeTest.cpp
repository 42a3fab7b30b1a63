#include "ui/WebBridge.h"

#include "model/JsonCoding.h"
#include "platform/Waiting.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <limits>

using namespace velmor;
using Json = nlohmann::json;

namespace {

class RecordingView : public WebView {
public:
  void evaluateJavaScript(const std::string& script) override { scripts.push_back(script); }
  void addMessageHandler(const std::string&, MessageHandler) override {}
  std::vector<std::string> scripts;
};

/// Notes every call; suggestions take ten seconds.
class FakeCommands : public AppCommands {
public:
  explicit FakeCommands(MainLoop& mainLoop) : loop(mainLoop) {}

  AppConfig settings() const override { return config; }
  void saveSettings(const AppConfig& next) override {
    if (!saveFailure.empty()) throw VelmorError(saveFailure);
    config = next;
  }
  AppInfo appInfo() override { return {"1.2.3", "16.11.2026"}; }
  Task<UpdateInfo> checkForUpdate() override { co_return UpdateInfo{.current = "1.2.3"}; }
  AppState getState() override { return {true, false, "Tinker recommendations ready"}; }
  void startNowPlayingWatcher() override { calls += "watch "; }
  Task<VisionResult> suggestTracks() override {
    co_await Sleep(loop, Seconds{10});
    if (!suggestFailure.empty()) throw VelmorError(suggestFailure);
    co_return result;
  }
  void restoreWindow() override { calls += "restore "; }
  void bringToFront() override { calls += "front "; }
  void quit() override { calls += "quit "; }
  void minimize() override { calls += "minimize "; }
  void openURL(const std::string& url) override { calls += url + " "; }

  MainLoop& loop;
  AppConfig config;
  VisionResult result;
  std::string saveFailure;
  std::string suggestFailure;
  std::string calls;
};

class WebBridgeTest : public testing::Test {
protected:
  WebBridgeTest() {
    commands->config.version = 8;
    bridge.setWebView(view);
  }

  /// Posts a message and gives the scripts that it led to, one a line.
  std::string post(const std::string& message, const char* name = "velmor") {
    view->scripts.clear();
    bridge.didReceive(name, message);
    system.loop.runPending();
    return scripts();
  }

  std::string scripts() const {
    std::string lines;
    for (const auto& script : view->scripts)
      lines += script;
    return lines;
  }

  std::string call(const std::string& method, const Json& args = Json::array()) {
    return post(Json{{"id", "1"}, {"method", method}, {"args", args}}.dump());
  }

  FakePlatform system;
  std::shared_ptr<FakeCommands> commands = std::make_shared<FakeCommands>(system.loop);
  std::shared_ptr<RecordingView> view = std::make_shared<RecordingView>();
  WebBridge bridge{system.loop, commands};
};

const auto resolved = "window.__velmorResolve(\"1\", null);";
const auto invalid = "window.__velmorReject(\"1\", \"Invalid arguments\");";

} // namespace

TEST_F(WebBridgeTest, AnswersRecords) {
  const std::pair<const char*, Json> cases[] = {
      {"GetSettings", commands->config},
      {"GetAppInfo", {{"version", "1.2.3"}, {"buildDate", "16.11.2026"}}},
      {"CheckForUpdate", UpdateInfo{.current = "1.2.3"}},
      {"GetState", commands->getState()},
  };
  for (const auto& [method, record] : cases) {
    EXPECT_EQ(call(method), "window.__velmorResolve(\"1\", " + record.dump() + ");");
  }
}

TEST_F(WebBridgeTest, CarriesOutCommands) {
  const std::pair<const char*, const char*> cases[] = {
      {"RestoreWindow", "restore front "},
      {"StartCompactDrag", ""},
      {"EndCompactDrag", ""},
      {"BringToFront", "front "},
      {"Quit", "quit "},
      {"WindowMinimise", "minimize "},
      {"StartAutoDetection", ""},
  };
  for (const auto& [method, calls] : cases) {
    commands->calls.clear();
    EXPECT_EQ(call(method, {1, 2}), resolved) << method;
    EXPECT_EQ(commands->calls, calls) << method;
  }
  commands->config.autoSuggestTracks = true;
  EXPECT_EQ(call("StartAutoDetection"), resolved);
  EXPECT_EQ(call("BrowserOpenURL", {"https://x/?a=1&b", 7}), resolved);
  EXPECT_EQ(commands->calls, "watch https://x/?a=1&b ");
  EXPECT_EQ(call("ShowAbout"),
            std::string("window.__velmorEmit(\"velmor:show-about\", null);") + resolved);
}

TEST_F(WebBridgeTest, ChecksArguments) {
  Json config = commands->config;
  config["theme"] = "red";
  EXPECT_EQ(call("SaveSettings", {config, "ignored"}), resolved);
  EXPECT_EQ(commands->config.theme, "red");
  auto incomplete = config;
  incomplete.erase("theme");
  auto fractional = config;
  fractional["recommendationCount"] = 3.5;
  for (const Json& args :
       {Json::array(), Json::array({"x"}), Json::array({Json::array()}), Json::array({nullptr}),
        Json::array({incomplete}), Json::array({fractional}), Json("x"), Json(nullptr)}) {
    EXPECT_EQ(call("SaveSettings", args), invalid) << args;
  }
  for (const Json& args :
       {Json::array(), Json::array({42}), Json::array({nullptr}), Json("https://x")}) {
    EXPECT_EQ(call("BrowserOpenURL", args), invalid) << args;
  }
  commands->saveFailure = "The disk is full.";
  EXPECT_EQ(call("SaveSettings", Json::array({config})),
            "window.__velmorReject(\"1\", \"The disk is full.\");");
}

TEST_F(WebBridgeTest, RejectsUnknownMethodsByName) {
  for (const auto* name : {"getState", "GetState ", "", "Eval\"</script>"}) {
    EXPECT_EQ(call(name), "window.__velmorReject(\"1\", " +
                              Json("Unknown method " + std::string(name)).dump() + ");");
  }
}

TEST_F(WebBridgeTest, IgnoresWhatIsNoMessage) {
  for (const auto* message : {R"({"method":"GetState"})", R"({"id":7,"method":"GetState"})",
                              R"({"id":"7"})", R"({"id":"7","method":null})", "[]", "\"x\"", "",
                              "{", "{\"id\":\"\xFF\",\"method\":\"Quit\"}"}) {
    EXPECT_EQ(post(message), "") << message;
  }
  EXPECT_EQ(post(R"({"id":"7","method":"Quit"})", "other"), "");
  EXPECT_EQ(commands->calls, "");
}

TEST_F(WebBridgeTest, KeepsAnyTextWhole) {
  const std::string odd = "\"\\\u2028\u2029</script>\x01\n\t\x7F😀";
  commands->result.notice = odd;
  const auto id = Json(odd).dump();
  EXPECT_EQ(post(R"({"id":)" + id + R"(,"method":"Quit"})"),
            "window.__velmorResolve(" + id + ", null);");
  EXPECT_EQ(call("BrowserOpenURL", {odd}), resolved);
  EXPECT_TRUE(commands->calls.ends_with(odd + " "));
  call("SuggestTracks");
  system.loop.advance(Seconds{11});
  EXPECT_EQ(scripts(), "window.__velmorResolve(\"1\", " + Json(commands->result).dump() + ");");
  commands->suggestFailure = odd;
  call("SuggestTracks");
  system.loop.advance(Seconds{11});
  EXPECT_EQ(scripts(), "window.__velmorReject(\"1\", " + id + ");");
}

TEST_F(WebBridgeTest, AnswersOthersWhileOneWaits) {
  EXPECT_EQ(post(R"({"id":"slow","method":"SuggestTracks"})"), "");
  EXPECT_FALSE(bridge.isIdle());
  EXPECT_EQ(call("Quit"), resolved);
  system.loop.advance(Seconds{11});
  EXPECT_TRUE(view->scripts.back().starts_with("window.__velmorResolve(\"slow\", {"));
  EXPECT_TRUE(bridge.isIdle());
}

TEST_F(WebBridgeTest, SendsNothingThatCannotBeEncoded) {
  commands->config.bpmTolerance = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(call("GetSettings"), "");
}

TEST_F(WebBridgeTest, EmitsEventsAndDropsAllWithoutAView) {
  bridge.emit("velmor:x", "{\"a\":1}");
  bridge.emit("velmor:track-stopped", std::nullopt);
  EXPECT_EQ(scripts(), "window.__velmorEmit(\"velmor:x\", {\"a\":1});"
                       "window.__velmorEmit(\"velmor:track-stopped\", null);");
  view.reset();
  bridge.emit("velmor:x", std::nullopt);
  bridge.didReceive("velmor", R"({"id":"1","method":"Quit"})");
  system.loop.runPending();
  EXPECT_EQ(commands->calls, "quit ");
}
