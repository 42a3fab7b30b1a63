#pragma once

#include "platform/MainLoop.h"
#include "platform/PageView.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/page/WebKitPageDrag.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

struct _GtkWidget;
struct _WebKitJavascriptResult;
struct _WebKitUserContentManager;

namespace velmor {

struct Color;
class WebKitProfile;

/// A web view of WebKitGTK. What the page posts goes to the actor lane; painting, scrolling and
/// how loading goes belong to the display lane.
class WebKitPageView final : public PageView {
public:
  /// Gets the toolkit's event that asks for the context menu, null for a key.
  using MenuHandler = std::function<void(void* event)>;

  /// What the view needs of the window around it.
  struct Surroundings {
    MenuHandler menu;
    WebKitPageDrag::WindowPlace window;
  };

  WebKitPageView(MainLoop& mainLoop, const WebKitProfile& profile,
                 const WebViewConfiguration& configuration, Surroundings surroundings);
  WebKitPageView(const WebKitPageView&) = delete;
  WebKitPageView& operator=(const WebKitPageView&) = delete;
  ~WebKitPageView() override;

  void evaluateJavaScript(const std::string& script) override;
  void addMessageHandler(const std::string& name, MessageHandler handler) override;
  void setNavigationDelegate(std::weak_ptr<NavigationDelegate> heard) override {
    delegate = std::move(heard);
  }
  void loadFile(const std::filesystem::path& page,
                const std::filesystem::path& readAccess) override;

  [[nodiscard]] _GtkWidget* widget() const { return view.get(); }
  /// Whether a drag on the page's background moves the window.
  void setMovesWindow(bool moves) {
    drag.setEnabled(moves && configuration.mouseDownCanMoveWindow);
  }
  /// What shows before the page paints, and where it does not.
  void setBackground(const Color& color);

private:
  class Refusals;
  struct Handler;

  void addScripts();
  void connectSignals();
  void received(const Handler& handler, _WebKitJavascriptResult* result);
  void finished();
  void died(const std::string& description);
  void failed(const std::string& description);

  MainLoop& loop;
  WebViewConfiguration configuration;
  GlibPtr<_WebKitUserContentManager> manager;
  WebKitPageDrag drag;
  GlibPtr<_GtkWidget> view;
  std::unique_ptr<Refusals> refusals;
  std::weak_ptr<NavigationDelegate> delegate;
  std::map<std::string, std::unique_ptr<Handler>> handlers;
  bool hasFailed = false;
  SignalConnections signals;
};

} // namespace velmor
