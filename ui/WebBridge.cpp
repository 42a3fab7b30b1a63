#include "ui/WebBridge.h"

#include "base/Json.h"

#include <functional>
#include <map>

namespace velmor {

using Json = nlohmann::json;

namespace {

constexpr int unknownMethod = 404;

VelmorError invalidArgs() {
  return VelmorError("Invalid arguments");
}

AppConfig configArgument(const Json& args) {
  if (args.empty()) throw invalidArgs();
  try {
    return args.front().get<AppConfig>();
  } catch (const DecodingError&) {
    throw invalidArgs();
  }
}

std::string textArgument(const Json& args) {
  if (args.empty() || !args.front().is_string()) throw invalidArgs();
  return args.front().get<std::string>();
}

/// A result as JSON; nothing when it cannot be encoded.
std::optional<std::string> encoded(const WebBridge::Result& result) {
  const auto encode = [](const auto& value) -> std::string {
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>)
      return "null";
    else
      return jsonEncoder().encode(value);
  };
  try {
    return std::visit(encode, result);
  } catch (const EncodingError&) {
    return std::nullopt;
  }
}

} // namespace

WebBridge::WebBridge(MainLoop& mainLoop, std::shared_ptr<AppCommands> commands)
    : controller(std::move(commands)), tasks(mainLoop) {}

void WebBridge::didReceive(const std::string& name, const std::string& body) {
  if (name != handlerName) return;
  const Json message = Json::parse(body, nullptr, false);
  if (!message.is_object()) return;
  const auto id = message.find("id");
  const auto method = message.find("method");
  if (id == message.end() || !id->is_string()) return;
  if (method == message.end() || !method->is_string()) return;
  const auto args = message.find("args");
  const bool given = args != message.end() && args->is_array();
  tasks.start(answer(id->get<std::string>(), method->get<std::string>(),
                     given ? *args : Json(Json::value_t::array)));
}

void WebBridge::emit(const std::string& event, const std::optional<std::string>& jsonPayload) {
  evaluate("window.__velmorEmit(" + jsonEncoder().encode(event) + ", " +
           jsonPayload.value_or("null") + ");");
}

Task<void> WebBridge::answer(std::string id, std::string method, Json args) {
  try {
    const Result result = co_await handle(method, args);
    respond(id, result);
  } catch (const std::exception& error) {
    reject(id, error.what());
  }
}

Task<WebBridge::Result> WebBridge::handle(const std::string& method, const Json& args) {
  if (method == "CheckForUpdate") co_return co_await controller->checkForUpdate();
  if (method == "GetState") co_return co_await controller->getState();
  if (method == "SuggestTracks") co_return co_await controller->suggestTracks();
  co_return handleAtOnce(method, args);
}

WebBridge::Result WebBridge::handleAtOnce(const std::string& method, const Json& args) {
  using Command = std::function<Result(WebBridge&, const Json&)>;
  // Wraps a command that answers nothing.
  const auto silent = [](auto action) -> Command {
    return [action](WebBridge& bridge, const Json& given) -> Result {
      action(bridge, given);
      return std::monostate{};
    };
  };
  static const std::map<std::string, Command, std::less<>> commands{
      {"GetSettings", [](WebBridge& bridge, const Json&) { return bridge.controller->settings(); }},
      {"SaveSettings", silent([](WebBridge& bridge, const Json& given) {
         bridge.controller->saveSettings(configArgument(given));
       })},
      {"GetAppInfo", [](WebBridge& bridge, const Json&) { return bridge.controller->appInfo(); }},
      {"StartAutoDetection", silent([](WebBridge& bridge, const Json&) {
         if (!bridge.controller->settings().autoSuggestTracks) return;
         bridge.controller->startNowPlayingWatcher();
       })},
      {"RestoreWindow", silent([](WebBridge& bridge, const Json&) {
         bridge.controller->restoreWindow();
         bridge.controller->bringToFront();
       })},
      // The window follows the mouse by itself; the page may still announce a drag.
      {"StartCompactDrag", silent([](WebBridge&, const Json&) {})},
      {"EndCompactDrag", silent([](WebBridge&, const Json&) {})},
      {"BringToFront",
       silent([](WebBridge& bridge, const Json&) { bridge.controller->bringToFront(); })},
      {"ShowAbout",
       silent([](WebBridge& bridge, const Json&) { bridge.emit(event::showAbout, std::nullopt); })},
      {"Quit", silent([](WebBridge& bridge, const Json&) { bridge.controller->quit(); })},
      {"WindowMinimise",
       silent([](WebBridge& bridge, const Json&) { bridge.controller->minimize(); })},
      {"BrowserOpenURL", silent([](WebBridge& bridge, const Json& given) {
         bridge.controller->openURL(textArgument(given));
       })},
  };
  const auto command = commands.find(method);
  if (command == commands.end()) throw VelmorError("Unknown method " + method, unknownMethod);
  return command->second(*this, args);
}

void WebBridge::respond(const std::string& id, const Result& result) {
  const auto json = encoded(result);
  if (!json) return;
  evaluate("window.__velmorResolve(" + jsonEncoder().encode(id) + ", " + *json + ");");
}

void WebBridge::reject(const std::string& id, const std::string& message) {
  evaluate("window.__velmorReject(" + jsonEncoder().encode(id) + ", " +
           jsonEncoder().encode(message) + ");");
}

void WebBridge::evaluate(const std::string& script) {
  if (const auto view = webView.lock()) view->evaluateJavaScript(script);
}

} // namespace velmor
