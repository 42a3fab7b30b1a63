#pragma once

#include "platform/WebView.h"

#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <utility>

namespace velmor {

/// A page's place taken by a text stream: every script that would run in the page is one line.
class StreamWebView : public WebView {
public:
  /// `whenBroken` is called when a script could not be written: the disk is full, or nobody reads.
  explicit StreamWebView(std::ostream& stream, std::function<void()> whenBroken = nullptr)
      : out(stream), brokenHandler(std::move(whenBroken)) {}

  void evaluateJavaScript(const std::string& script) override;
  void addMessageHandler(const std::string& name, MessageHandler handler) override;

  /// Delivers a message as if the page had posted it.
  void post(const std::string& name, const std::string& body);

private:
  std::ostream& out;
  std::function<void()> brokenHandler;
  std::map<std::string, MessageHandler> handlers;
};

} // namespace velmor
