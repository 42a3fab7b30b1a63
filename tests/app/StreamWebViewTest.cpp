#include "app/StreamWebView.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using namespace velmor;

TEST(StreamWebView, DeliversAMessageToItsOwnHandlerAlone) {
  std::ostringstream out;
  StreamWebView view(out);
  std::string heard;
  view.addMessageHandler(
      "velmor", [&](const auto& name, const auto& body) { heard += name + " " + body + "\n"; });
  view.post("other", "{}");
  view.post("velmor", R"({"id":"1"})");
  EXPECT_EQ(heard, "velmor {\"id\":\"1\"}\n");
  view.evaluateJavaScript("reply();");
  EXPECT_EQ(out.str(), "reply();\n");
}
