#pragma once

#include <functional>
#include <string>

namespace velmor {

/// The view that shows the page. Main thread only.
class WebView {
public:
  /// Gets a message that the page posted: the handler's name and the body as JSON text. Called in
  /// the actor lane.
  using MessageHandler = std::function<void(const std::string& name, const std::string& body)>;

  virtual ~WebView() = default;

  /// Runs a script in the page, after those before it; its result and its errors are ignored.
  virtual void evaluateJavaScript(const std::string& script) = 0;

  /// Registers the handler that the page reaches as window.webkit.messageHandlers.NAME.
  virtual void addMessageHandler(const std::string& name, MessageHandler handler) = 0;
};

} // namespace velmor
