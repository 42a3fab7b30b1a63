#include "tests/fakes/FakeMainLoop.h"
#include "tests/fakes/FakeMainWindowOwner.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/fuzz/FuzzTarget.h"
#include "ui/PageMessage.h"
#include "ui/WebBridge.h"

using namespace velmor;

/// The input is what a page posts: every message with an id is answered, once.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string body(fuzz::text(data, size));
  FakeMainLoop loop;
  const auto view = std::make_shared<FakePageView>();
  WebBridge bridge(loop, std::make_shared<FakeMainWindowOwner>(loop));
  bridge.setWebView(view);
  bridge.didReceive(WebBridge::handlerName, body);
  loop.advance(Seconds{11});
  const auto isAnswer = [](const std::string& script) {
    return script.starts_with("window.__velmorRes") || script.starts_with("window.__velmorRej");
  };
  const auto answers = std::ranges::count_if(view->scripts, isAnswer);
  fuzz::require(answers == (PageMessage::read(body) ? 1 : 0));
  return 0;
}
