#include "app/StreamWebView.h"

namespace velmor {

void StreamWebView::evaluateJavaScript(const std::string& script) {
  out << script << '\n' << std::flush;
  if (!out && brokenHandler) brokenHandler();
}

void StreamWebView::addMessageHandler(const std::string& name, MessageHandler handler) {
  handlers[name] = std::move(handler);
}

void StreamWebView::post(const std::string& name, const std::string& body) {
  const auto handler = handlers.find(name);
  if (handler != handlers.end()) handler->second(name, body);
}

} // namespace velmor
