#include "ui/WebBridge.h"

#include "base/Json.h"
#include "base/Text.h"
#include "base/VelmorError.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <variant>
#include <vector>

namespace velmor {

using Json = nlohmann::json;

namespace {

constexpr int unknownMethod = 404;

/// What a command gives; nothing is answered with null.
using Entries = std::vector<std::optional<CrateEntry>>;
using Result = std::variant<std::monostate, AppConfig, AppInfo, UpdateInfo, AppState, VisionResult,
                            TrackMetadata, CrateState, Entries>;
constexpr std::monostate nothing;

/// What a command works with.
struct Call {
  AppCommands& app;
  EventSink& page;
  bool& isWindowHeld;
  const Json& args;
};

VelmorError invalidArgs() {
  return VelmorError("Invalid arguments");
}

template <Record Type>
Type recordArgument(const Json& args) {
  if (args.empty()) throw invalidArgs();
  try {
    return args.front().get<Type>();
  } catch (const DecodingError&) {
    throw invalidArgs();
  }
}

std::vector<SongName> songsArgument(const Json& args) {
  if (args.empty() || !args.front().is_array()) throw invalidArgs();
  std::vector<SongName> songs;
  for (const auto& song : args.front())
    songs.push_back(recordArgument<SongName>(Json::array({song})));
  return songs;
}

bool switchArgument(const Json& args) {
  if (args.empty() || !args.front().is_boolean()) throw invalidArgs();
  return args.front().get<bool>();
}

std::string textArgument(const Json& args) {
  if (args.empty() || !args.front().is_string()) throw invalidArgs();
  const auto& given = args.front().get_ref<const std::string&>();
  if (text::bounded(given).size() < given.size()) throw invalidArgs();
  return given;
}

/// Every command, told once.
using Commands = std::vector<std::pair<std::string, std::function<Task<Result>(Call)>>>;

const Commands& commands() {
  using Answer = Task<Result>;
  static const Commands table{
      {"GetSettings", [](Call call) -> Answer { co_return call.app.settings(); }},
      {"SaveSettings",
       [](Call call) -> Answer {
         call.app.saveSettings(recordArgument<AppConfig>(call.args));
         co_return nothing;
       }},
      {"GetAppInfo", [](Call call) -> Answer { co_return call.app.appInfo(); }},
      {"CheckForUpdate", [](Call call) -> Answer { co_return co_await call.app.checkForUpdate(); }},
      {"GetState", [](Call call) -> Answer { co_return co_await call.app.getState(); }},
      {"StartAutoDetection",
       [](Call call) -> Answer {
         if (call.app.settings().autoSuggestTracks) call.app.startNowPlayingWatcher();
         co_return nothing;
       }},
      {"SuggestTracks", [](Call call) -> Answer { co_return co_await call.app.suggestTracks(); }},
      {"GetCrate", [](Call call) -> Answer { co_return call.app.crateState(); }},
      {"LookUpInCrate",
       [](Call call) -> Answer {
         co_return co_await call.app.lookUpInCrate(songsArgument(call.args));
       }},
      {"SuggestAfter",
       [](Call call) -> Answer {
         co_return co_await call.app.suggestAfter(recordArgument<SongName>(call.args));
       }},
      {"SetCrateKeys",
       [](Call call) -> Answer {
         call.app.setCrateKeys(switchArgument(call.args));
         co_return nothing;
       }},
      {"ShowInFileManager",
       [](Call call) -> Answer {
         co_await call.app.showInFileManager(textArgument(call.args));
         co_return nothing;
       }},
      {"GetDetectedTrack",
       [](Call call) -> Answer {
         if (auto track = call.app.detectedTrack()) co_return *track;
         co_return nothing;
       }},
      {"HoldWindow",
       [](Call call) -> Answer {
         call.isWindowHeld = switchArgument(call.args);
         co_return nothing;
       }},
      {"RestoreWindow",
       [](Call call) -> Answer {
         call.app.restoreWindow();
         call.app.bringToFront();
         co_return nothing;
       }},
      // The window follows the mouse by itself; the page may still announce a drag.
      {"StartCompactDrag", [](Call) -> Answer { co_return nothing; }},
      {"EndCompactDrag", [](Call) -> Answer { co_return nothing; }},
      {"BringToFront",
       [](Call call) -> Answer {
         call.app.bringToFront();
         co_return nothing;
       }},
      {"ShowAbout",
       [](Call call) -> Answer {
         call.page.emit(event::showAbout, std::nullopt);
         co_return nothing;
       }},
      {"Quit",
       [](Call call) -> Answer {
         call.app.quit();
         co_return nothing;
       }},
      {"WindowMinimise",
       [](Call call) -> Answer {
         call.app.minimize();
         co_return nothing;
       }},
      {"BrowserOpenURL",
       [](Call call) -> Answer {
         call.app.openURL(textArgument(call.args));
         co_return nothing;
       }},
  };
  return table;
}

/// Runs a command. The task throws VelmorError, or what the command throws.
Task<Result> handle(const std::string& method, Call call) {
  const auto isMeant = [&](const auto& command) { return command.first == method; };
  const auto command = std::find_if(commands().begin(), commands().end(), isMeant);
  if (command == commands().end()) {
    throw VelmorError("Unknown method " + std::string(text::bounded(method)), unknownMethod);
  }
  return command->second(call);
}

/// A result as JSON; nothing when it cannot be encoded.
std::optional<std::string> encoded(const Result& result) {
  const auto encode = [](const auto& value) -> std::string {
    using Type = std::decay_t<decltype(value)>;
    if constexpr (std::is_same_v<Type, std::monostate>) {
      return "null";
    } else if constexpr (std::is_same_v<Type, Entries>) {
      auto all = Json::array();
      for (const auto& entry : value)
        all.push_back(entry ? Json(*entry) : Json());
      return jsonEncoder().encode(all);
    } else {
      return jsonEncoder().encode(value);
    }
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
  auto message = PageMessage::read(body);
  if (message) tasks.start(answer(std::move(*message)));
}

void WebBridge::emit(const std::string& event, const std::optional<std::string>& jsonPayload) {
  evaluate("window.__velmorEmit(" + jsonEncoder().encode(event) + ", " +
           jsonPayload.value_or("null") + ");");
}

void WebBridge::forgetPage() {
  ++pagesBefore;
  isWindowHeld = false;
  tasks.cancelAll();
}

bool WebBridge::mayClose() {
  if (!std::exchange(isWindowHeld, false)) return true;
  emit(event::closeAsked, std::nullopt);
  return false;
}

Task<void> WebBridge::answer(PageMessage message) {
  const int page = pagesBefore;
  try {
    const Result result =
        co_await handle(message.method, {*controller, *this, isWindowHeld, message.args});
    if (page != pagesBefore) co_return;
    if (const auto json = encoded(result)) respond(message.id, *json);
  } catch (const std::exception& error) {
    if (page == pagesBefore) reject(message.id, messageOf(error));
  }
}

void WebBridge::respond(const std::string& id, const std::string& json) {
  evaluate("window.__velmorResolve(" + jsonEncoder().encode(id) + ", " + json + ");");
}

void WebBridge::reject(const std::string& id, const std::string& message) {
  evaluate("window.__velmorReject(" + jsonEncoder().encode(id) + ", " +
           jsonEncoder().encode(message) + ");");
}

void WebBridge::evaluate(const std::string& script) {
  if (const auto view = webView.lock()) view->evaluateJavaScript(script);
}

} // namespace velmor
