#include "ui/WebBridge.h"

#include "base/Json.h"
#include "base/Text.h"
#include "platform/async/Waiting.h"
#include "tests/fakes/FakeMainLoop.h"
#include "tests/fakes/FakeWindow.h"

#include <gtest/gtest.h>

#include <limits>

using namespace velmor;
using Json = nlohmann::json;

namespace {

/// Notes calls; suggestions take ten seconds.
class FakeCommands : public AppCommands {
public:
  explicit FakeCommands(MainLoop& mainLoop) : loop(mainLoop) {}

  AppConfig settings() const override { return config; }
  void saveSettings(const AppConfig& next) override {
    if (!failure.empty()) throw VelmorError(failure);
    config = next;
  }
  AppInfo appInfo() override { return {}; }
  Task<UpdateInfo> checkForUpdate() override { co_return UpdateInfo{}; }
  Task<AppState> getState() override { co_return AppState{}; }
  void startNowPlayingWatcher() override { calls += "watch "; }
  Task<VisionResult> suggestTracks() override {
    co_await Sleep(loop, Seconds{10});
    if (!failure.empty()) throw VelmorError(failure);
    co_return VisionResult{};
  }
  void restoreWindow() override {}
  void bringToFront() override {}
  void quit() override { calls += "quit "; }
  void minimize() override {}
  void openURL(const std::string& url) override { calls += url + " "; }

  MainLoop& loop;
  AppConfig config;
  std::string failure;
  std::string calls;
};

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
  std::shared_ptr<FakeCommands> commands = std::make_shared<FakeCommands>(loop);
  std::shared_ptr<FakePageView> view = std::make_shared<FakePageView>();
  WebBridge bridge{loop, commands};
};

const auto resolved = "window.__velmorResolve(\"1\", null);";

std::string rejected(const std::string& message) {
  return "window.__velmorReject(\"1\", " + Json(message).dump() + ");";
}

} // namespace

TEST_F(WebBridgeTest, WatchesOnlyWhenTheSettingsSaySo) {
  for (const bool wanted : {false, true}) {
    commands->config.autoSuggestTracks = wanted;
    EXPECT_EQ(call("StartAutoDetection", {1, 2}), resolved);
    EXPECT_EQ(commands->calls, wanted ? "watch " : "");
  }
}

TEST_F(WebBridgeTest, ChecksArguments) {
  Json config = commands->config;
  config["theme"] = "red";
  EXPECT_EQ(call("SaveSettings", {config, "ignored"}), resolved);
  EXPECT_EQ(commands->config.theme, "red");
  auto incomplete = config;
  incomplete.erase("theme");
  for (const Json& args : {Json::array(), Json::array({"x"}), Json::array({incomplete}), Json("x")})
    EXPECT_EQ(call("SaveSettings", args), rejected("Invalid arguments")) << args;
  for (const Json& args : {Json::array(), Json::array({42}), Json("https://x")})
    EXPECT_EQ(call("BrowserOpenURL", args), rejected("Invalid arguments")) << args;
  EXPECT_EQ(call("getState"), rejected("Unknown method getState"));
}

TEST_F(WebBridgeTest, IgnoresWhatIsNoMessage) {
  for (const auto* message :
       {R"({"method":"Quit"})", R"({"id":7,"method":"Quit"})", R"({"id":"7","method":null})", "[]",
        "{", "{\"id\":\"\xFF\",\"method\":\"Quit\"}"}) {
    EXPECT_EQ(post(message), "") << message;
  }
  EXPECT_EQ(post(R"({"id":"7","method":"Quit"})", {}, "other"), "");
  EXPECT_EQ(commands->calls, "");
}

TEST_F(WebBridgeTest, KeepsAnyTextWhole) {
  const std::string odd = "\"\\\u2028\u2029</script>\x01\n\t\x7F😀";
  const auto quoted = Json(odd).dump();
  EXPECT_EQ(post(R"({"id":)" + quoted + R"(,"method":"Quit"})"),
            "window.__velmorResolve(" + quoted + ", null);");
  EXPECT_EQ(call("BrowserOpenURL", {odd}), resolved);
  EXPECT_EQ(commands->calls, "quit " + odd + " ");
  commands->failure = odd;
  for (const auto* const method : {"SuggestTracks", "SaveSettings"})
    EXPECT_EQ(call(method, Json::array({commands->config})), rejected(odd));
}

TEST_F(WebBridgeTest, AnswersOthersWhileOneWaits) {
  EXPECT_EQ(post(R"({"id":"slow","method":"SuggestTracks"})"), "");
  EXPECT_FALSE(bridge.isIdle());
  EXPECT_TRUE(call("Quit").starts_with(resolved + std::string("window.__velmorResolve(\"slow\"")));
  EXPECT_TRUE(bridge.isIdle());
}

TEST_F(WebBridgeTest, SendsNothingThatCannotBeEncoded) {
  commands->config.bpmTolerance = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(call("GetSettings"), "");
}

TEST_F(WebBridgeTest, DropsAllWithoutAView) {
  view.reset();
  bridge.emit("velmor:x", std::nullopt);
  bridge.didReceive("velmor", R"({"id":"1","method":"Quit"})");
  loop.runPending();
  EXPECT_EQ(commands->calls, "quit ");
}
