#pragma once

#include "platform/OverlayView.h"
#include "platform/PageView.h"
#include "platform/Window.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velmor {

/// A page that keeps the scripts that are run in it. A test posts its messages by `handlers`.
class FakePageView : public PageView {
public:
  void evaluateJavaScript(const std::string& script) override { scripts.push_back(script); }
  void addMessageHandler(const std::string& name, MessageHandler handler) override {
    handlers[name] = std::move(handler);
  }
  void setNavigationDelegate(std::weak_ptr<NavigationDelegate> heard) override {
    delegate = std::move(heard);
  }
  void loadFile(const std::filesystem::path& file, const std::filesystem::path& folder) override {
    page = file;
    readAccess = folder;
  }

  std::vector<std::string> scripts;
  std::map<std::string, MessageHandler> handlers;
  std::weak_ptr<NavigationDelegate> delegate;
  std::filesystem::path page;
  std::filesystem::path readAccess;
  WebViewConfiguration configuration;
};

/// A window on a screen of 1440 by 900 that does at once what it is told. `orders` keeps the calls
/// whose order matters.
class FakeWindow : public Window {
public:
  FakeWindow(const Rect& content, unsigned mask) : style(mask), place(content) {}

  void setDelegate(std::weak_ptr<WindowDelegate> heard) override { delegate = std::move(heard); }
  void setTitle(const std::string& text) override { name = text; }
  std::string title() const override { return name; }
  void setAppearance(const WindowAppearance& look) override { appearance = look; }
  void setStyleMask(unsigned mask) override {
    style = mask;
    orders.emplace_back("style");
  }
  void setLevel(int height) override { level = height; }
  void setCollectionBehavior(unsigned bits) override { behavior = bits; }
  void setButtonHidden(WindowButton button, bool hidden) override { isHidden[button] = hidden; }
  std::optional<Rect> buttonFrame(WindowButton button) const override {
    return button == WindowButton::Miniaturize ? minimiseButton : std::nullopt;
  }
  void setMinimumSize(Size size) override { minimum = size; }
  void setMaximumSize(Size size) override { maximum = size; }
  Size minimumSize() const override { return minimum; }
  Rect frame() const override { return place; }
  void setFrame(const Rect& frame) override {
    place = frame;
    orders.emplace_back("frame");
  }
  void center() override {
    place.origin = {(1440 - place.width()) / 2, (900 - place.height()) / 2};
  }
  bool isVisible() const override { return visible; }
  bool isMiniaturized() const override { return miniaturized; }
  void miniaturize() override { miniaturized = (style & styleMask::miniaturizable) != 0; }
  void deminiaturize() override {
    miniaturized = false;
    orders.emplace_back("deminiaturize");
  }
  /// What the user does.
  void closeByButton() {
    const auto heard = delegate.lock();
    if (!heard || heard->windowShouldClose()) close();
  }
  void close() override {
    if (const auto heard = delegate.lock()) heard->windowWillClose();
    visible = false;
  }
  void makeKeyAndOrderFront() override {
    miniaturized = false;
    order("key");
  }
  void orderFront() override { order("front"); }
  void orderFrontRegardless() override { order("regardless"); }
  std::shared_ptr<PageView> addWebView(const WebViewConfiguration& configuration) override {
    page = std::make_shared<FakePageView>();
    page->configuration = configuration;
    return page;
  }
  void showMessage(const std::string& text, double margin) override {
    message = text;
    messageMargin = margin;
  }
  void setOverlay(std::shared_ptr<OverlayView> view) override {
    overlay = std::move(view);
    orders.emplace_back(overlay ? "overlay" : "no overlay");
  }

  std::weak_ptr<WindowDelegate> delegate;
  std::string name;
  WindowAppearance appearance;
  unsigned style;
  int level = windowLevel::normal;
  unsigned behavior = 0;
  std::map<WindowButton, bool> isHidden;
  std::optional<Rect> minimiseButton;
  Size minimum;
  Size maximum;
  Rect place;
  bool visible = false;
  bool miniaturized = false;
  std::shared_ptr<FakePageView> page;
  std::string message;
  double messageMargin = 0;
  std::shared_ptr<OverlayView> overlay;
  std::vector<std::string> orders;

private:
  void order(const char* how) {
    visible = true;
    orders.emplace_back(how);
  }
};

} // namespace velmor
