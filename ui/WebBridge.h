#pragma once

#include "base/VelmorError.h"
#include "platform/WebView.h"
#include "platform/async/TaskGroup.h"
#include "ui/AppCommands.h"
#include "ui/EventSink.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>
#include <variant>

namespace velmor {

/// The only way between the page and the application: runs the page's messages as commands,
/// answers them by id, and pushes events. Main thread only.
class WebBridge : public EventSink {
public:
  /// The name that the page posts its messages to.
  static constexpr auto handlerName = "velmor";

  /// What a command gives; nothing is answered with null.
  using Result =
      std::variant<std::monostate, AppConfig, AppInfo, UpdateInfo, AppState, VisionResult>;

  WebBridge(MainLoop& mainLoop, std::shared_ptr<AppCommands> controller);

  /// The view that shows the page. While there is none, replies and events are dropped.
  void setWebView(std::weak_ptr<WebView> view) { webView = std::move(view); }

  /// Takes a message, given as JSON text, and answers it in a task of its own. What is not a
  /// message is ignored.
  void didReceive(const std::string& name, const std::string& body);

  void emit(const std::string& event, const std::optional<std::string>& jsonPayload) override;

  /// Calls `work` each time the last running command has ended.
  void whenIdle(MainLoop::Work work) { tasks.whenEmpty(std::move(work)); }
  [[nodiscard]] bool isIdle() const { return tasks.isEmpty(); }

private:
  [[nodiscard]] Task<void> answer(std::string id, std::string method, nlohmann::json args);
  /// Throws VelmorError, or what the command throws.
  [[nodiscard]] Task<Result> handle(const std::string& method, const nlohmann::json& args);
  [[nodiscard]] Result handleAtOnce(const std::string& method, const nlohmann::json& args);
  void respond(const std::string& id, const Result& result);
  void reject(const std::string& id, const std::string& message);
  void evaluate(const std::string& script);

  const std::shared_ptr<AppCommands> controller;
  std::weak_ptr<WebView> webView;
  TaskGroup tasks;
};

} // namespace velmor
