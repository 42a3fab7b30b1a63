#include "platform/linux/page/WebKitPageView.h"

#include "platform/Window.h"
#include "platform/linux/page/WebKitProfile.h"

#include <webkit2/webkit2.h>

#include <algorithm>
#include <array>
#include <utility>

namespace velmor {

namespace {

GlibPtr<GtkWidget> makeView(const WebKitProfile& profile, WebKitUserContentManager* manager,
                            bool developerExtras) {
  const auto settings = profile.makeSettings(developerExtras);
  return owned(GTK_WIDGET(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", profile.context(),
                                       "user-content-manager", manager, "settings", settings.get(),
                                       nullptr)));
}

WebKitWebView* webView(const GlibPtr<GtkWidget>& widget) {
  return WEBKIT_WEB_VIEW(widget.get());
}

std::string fileAddress(const std::filesystem::path& path) {
  const GlibPtr<GFile> file(g_file_new_for_path(path.c_str()));
  return takeText(g_file_get_uri(file.get()));
}

/// Loading stopped because it was told to.
bool isOwnDoing(const GError* error) {
  return g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) != FALSE ||
         g_error_matches(error, WEBKIT_POLICY_ERROR,
                         WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE) != FALSE;
}

gboolean decide(WebKitPolicyDecision* decision, bool allowed) {
  if (allowed)
    webkit_policy_decision_use(decision);
  else
    webkit_policy_decision_ignore(decision);
  return TRUE;
}

std::string address(WebKitPolicyDecision* decision) {
  auto* const action = webkit_navigation_policy_decision_get_navigation_action(
      WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  return webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
}

bool isReload(WebKitPolicyDecision* decision) {
  auto* const action = webkit_navigation_policy_decision_get_navigation_action(
      WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  return webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_RELOAD;
}

bool editsText(WebKitContextMenuItem* item) {
  constexpr std::array editing{
      WEBKIT_CONTEXT_MENU_ACTION_COPY,          WEBKIT_CONTEXT_MENU_ACTION_CUT,
      WEBKIT_CONTEXT_MENU_ACTION_PASTE,         WEBKIT_CONTEXT_MENU_ACTION_PASTE_AS_PLAIN_TEXT,
      WEBKIT_CONTEXT_MENU_ACTION_DELETE,        WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL,
      WEBKIT_CONTEXT_MENU_ACTION_INPUT_METHODS, WEBKIT_CONTEXT_MENU_ACTION_UNICODE,
      WEBKIT_CONTEXT_MENU_ACTION_INSERT_EMOJI};
  const auto action = webkit_context_menu_item_get_stock_action(item);
  return webkit_context_menu_item_is_separator(item) != FALSE ||
         std::find(editing.begin(), editing.end(), action) != editing.end();
}

void keepEditing(WebKitContextMenu* menu) {
  for (guint number = webkit_context_menu_get_n_items(menu); number > 0; --number) {
    auto* const item = webkit_context_menu_get_item_at_position(menu, number - 1);
    if (!editsText(item)) webkit_context_menu_remove(menu, item);
  }
  auto* const last = webkit_context_menu_last(menu);
  if (last && webkit_context_menu_item_is_separator(last) != FALSE)
    webkit_context_menu_remove(menu, last);
}

bool isAboutText(WebKitHitTestResult* hit) {
  return webkit_hit_test_result_context_is_editable(hit) != FALSE ||
         webkit_hit_test_result_context_is_selection(hit) != FALSE;
}

} // namespace

/// Keeps the view to its one page: whatever leads elsewhere or wants more is refused. That is other
/// pages, also those of frames and dropped files, new windows, downloads and permissions.
class WebKitPageView::Refusals {
public:
  /// `menuHandler` is called where the view would have shown a menu of its own, with Back and
  /// Reload; texts that can be edited or copied keep theirs.
  Refusals(WebKitWebView* view, MenuHandler menuHandler) : onMenu(std::move(menuHandler)) {
    const auto decidePolicy = [](WebKitWebView*, WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type, gpointer data) -> gboolean {
      auto& self = *static_cast<Refusals*>(data);
      if (type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION)
        return decide(decision, !isReload(decision) && self.allows(address(decision)));
      if (type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION) return decide(decision, false);
      return decide(decision, webkit_response_policy_decision_is_mime_type_supported(
                                  WEBKIT_RESPONSE_POLICY_DECISION(decision)) != FALSE);
    };
    const auto createWindow = [](WebKitWebView*, WebKitNavigationAction*, gpointer) -> GtkWidget* {
      return nullptr;
    };
    const auto askPermission = [](WebKitWebView*, WebKitPermissionRequest* request,
                                  gpointer) -> gboolean {
      webkit_permission_request_deny(request);
      return TRUE;
    };
    const auto contextMenu = [](WebKitWebView*, WebKitContextMenu* menu, GdkEvent* event,
                                WebKitHitTestResult* hit, gpointer data) -> gboolean {
      if (isAboutText(hit)) {
        keepEditing(menu);
        return FALSE;
      }
      static_cast<Refusals*>(data)->onMenu(event);
      return TRUE;
    };
    signals.connect(view, "decide-policy", +decidePolicy, this);
    signals.connect(view, "create", +createWindow, this);
    signals.connect(view, "permission-request", +askPermission, this);
    signals.connect(view, "context-menu", +contextMenu, this);
  }

  /// The one address that may be loaded, once, from now on.
  void setPage(const std::string& address) {
    page = address;
    begun = false;
  }

private:
  [[nodiscard]] bool allows(const std::string& address) {
    if (address == page) return !std::exchange(begun, true);
    // A place within the page is no other page.
    return begun && address.starts_with(page + "#");
  }

  MenuHandler onMenu;
  std::string page;
  bool begun = false;
  SignalConnections signals;
};

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
    , refusals(std::make_unique<Refusals>(webView(view), std::move(surroundings.menu))) {
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
  for (const auto& source : configuration.userScripts)
    WebKitProfile::addScript(manager.get(), source.c_str());
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
    static_cast<WebKitPageView*>(data)->died(tooLarge ? "The page's process took too much memory."
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
  const GlibPtr<char> json(jsc_value_to_json(webkit_javascript_result_get_js_value(result), 0));
  // Nothing that JSON can say, so no message either.
  if (!json) return;
  loop.post(MainLoop::Lane::Actor, [handle = handler.handle, name = handler.name,
                                    body = std::string(json.get())] { handle(name, body); });
}

void WebKitPageView::loadFile(const std::filesystem::path& page,
                              const std::filesystem::path& /*a page's own folder is readable*/) {
  const auto address = fileAddress(page);
  hasFailed = false;
  refusals->setPage(address);
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

void WebKitPageView::died(const std::string& description) {
  // Nobody is told inside the toolkit's own call: loading again there would be too early.
  loop.post(MainLoop::Lane::Display, [told = delegate, description] {
    if (const auto hears = told.lock()) hears->processDidTerminate(description);
  });
}

void WebKitPageView::failed(const std::string& description) {
  hasFailed = true;
  if (const auto told = delegate.lock()) told->didFail(description);
}

} // namespace velmor
