#include "platform/linux/page/WebKitPageView.h"

#include "platform/Window.h"
#include "platform/linux/page/WebKitProfile.h"

#include <webkit2/webkit2.h>

namespace velmor {

namespace {

GObjectPtr<GtkWidget> makeView(const WebKitProfile& profile, WebKitUserContentManager* manager,
                               bool developerExtras) {
  const auto settings = profile.makeSettings(developerExtras);
  return owned(GTK_WIDGET(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", profile.context(),
                                       "user-content-manager", manager, "settings", settings.get(),
                                       nullptr)));
}

WebKitWebView* webView(const GObjectPtr<GtkWidget>& widget) {
  return WEBKIT_WEB_VIEW(widget.get());
}

std::string fileAddress(const std::filesystem::path& path) {
  GFile* const file = g_file_new_for_path(path.c_str());
  gchar* const uri = g_file_get_uri(file);
  std::string address = uri;
  g_free(uri);
  g_object_unref(file);
  return address;
}

/// Loading stopped because it was told to.
bool isOwnDoing(const GError* error) {
  return g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) != FALSE ||
         g_error_matches(error, WEBKIT_POLICY_ERROR,
                         WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE) != FALSE;
}

} // namespace

struct WebKitPageView::Handler {
  WebKitPageView* view;
  std::string name;
  MessageHandler handle;
};

WebKitPageView::WebKitPageView(MainLoop& mainLoop, const WebKitProfile& profile,
                               const WebViewConfiguration& wanted, Surroundings surroundings)
    : loop(mainLoop)
    , configuration(wanted)
    , manager(webkit_user_content_manager_new())
    , drag(manager.get(), std::move(surroundings.window))
    , view(makeView(profile, manager.get(), wanted.developerExtras))
    , refusals(webView(view), std::move(surroundings.menu)) {
  addScripts();
  drag.attach(webView(view));
  setMovesWindow(true);
  connectSignals();
}

WebKitPageView::~WebKitPageView() {
  signals.disconnect();
  gtk_widget_destroy(view.get());
}

void WebKitPageView::addScripts() {
  for (const auto& source : configuration.userScripts) {
    auto* const script =
        webkit_user_script_new(source.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                               WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
    webkit_user_content_manager_add_script(manager.get(), script);
    webkit_user_script_unref(script);
  }
}

void WebKitPageView::connectSignals() {
  const auto changed = [](WebKitWebView*, WebKitLoadEvent event, gpointer data) {
    if (event == WEBKIT_LOAD_FINISHED) static_cast<WebKitPageView*>(data)->finished();
  };
  const auto loadFailed = [](WebKitWebView*, WebKitLoadEvent, const gchar*, const GError* error,
                             gpointer data) -> gboolean {
    if (!isOwnDoing(error)) static_cast<WebKitPageView*>(data)->failed(error->message);
    // The toolkit's own page about it stays away.
    return TRUE;
  };
  const auto died = [](WebKitWebView*, WebKitWebProcessTerminationReason reason, gpointer data) {
    const bool tooLarge = reason == WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT;
    static_cast<WebKitPageView*>(data)->failed(tooLarge ? "The page's process took too much memory."
                                                        : "The page's process ended unexpectedly.");
  };
  signals.connect(view.get(), "load-changed", +changed, this);
  signals.connect(view.get(), "load-failed", +loadFailed, this);
  signals.connect(view.get(), "web-process-terminated", +died, this);
}

void WebKitPageView::evaluateJavaScript(const std::string& script) {
  webkit_web_view_evaluate_javascript(webView(view), script.c_str(),
                                      static_cast<gssize>(script.size()), nullptr, nullptr, nullptr,
                                      nullptr, nullptr);
}

void WebKitPageView::addMessageHandler(const std::string& name, MessageHandler handler) {
  auto& added = handlers[name];
  added = std::make_unique<Handler>(Handler{this, name, std::move(handler)});
  const auto posted = [](WebKitUserContentManager*, WebKitJavascriptResult* result, gpointer data) {
    const auto& receiver = *static_cast<Handler*>(data);
    receiver.view->received(receiver, result);
  };
  const auto signal = "script-message-received::" + name;
  signals.connect(manager.get(), signal.c_str(), +posted, added.get());
  webkit_user_content_manager_register_script_message_handler(manager.get(), name.c_str());
}

void WebKitPageView::received(const Handler& handler, _WebKitJavascriptResult* result) {
  gchar* const json = jsc_value_to_json(webkit_javascript_result_get_js_value(result), 0);
  // Nothing that JSON can say, so no message either.
  if (!json) return;
  loop.post(MainLoop::Lane::Actor, [handle = handler.handle, name = handler.name,
                                    body = std::string(json)] { handle(name, body); });
  g_free(json);
}

void WebKitPageView::loadFile(const std::filesystem::path& page,
                              const std::filesystem::path& /*a page's own folder is readable*/) {
  const auto address = fileAddress(page);
  hasFailed = false;
  refusals.setPage(address);
  webkit_web_view_load_uri(webView(view), address.c_str());
}

void WebKitPageView::setBackground(const Color& color) {
  if (configuration.drawsBackground) return;
  const GdkRGBA value{color.red, color.green, color.blue, color.alpha};
  webkit_web_view_set_background_color(webView(view), &value);
}

void WebKitPageView::finished() {
  // A failure ends like a success.
  if (hasFailed) return;
  if (const auto told = delegate.lock()) told->didFinish();
}

void WebKitPageView::failed(const std::string& description) {
  hasFailed = true;
  if (const auto told = delegate.lock()) told->didFail(description);
}

} // namespace velmor
