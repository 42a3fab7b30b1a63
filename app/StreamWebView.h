#pragma once

#include "platform/WebView.h"

#include <map>
#include <ostream>

namespace velmor {

/// A page's place taken by a text stream: every script that would run in the page is one line.
class StreamWebView : public WebView {
public:
  explicit StreamWebView(std::ostream& stream) : out(stream) {}

  void evaluateJavaScript(const std::string& script) override;
  void addMessageHandler(const std::string& name, MessageHandler handler) override;

  /// Delivers a message as if the page had posted it.
  void post(const std::string& name, const std::string& body);

private:
  std::ostream& out;
  std::map<std::string, MessageHandler> handlers;
};

} // namespace velmor
