#include "platform/linux/page/WebKitProfile.h"

#include <webkit2/webkit2.h>

#include <algorithm>
#include <array>
#include <utility>

namespace velmor {

namespace {

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

WebKitRefusals::WebKitRefusals(_WebKitWebView* view, MenuHandler menuHandler)
    : onMenu(std::move(menuHandler)) {
  const auto decidePolicy = [](WebKitWebView*, WebKitPolicyDecision* decision,
                               WebKitPolicyDecisionType type, gpointer data) -> gboolean {
    auto& self = *static_cast<WebKitRefusals*>(data);
    if (type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION)
      return decide(decision, self.allows(address(decision)));
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
    static_cast<WebKitRefusals*>(data)->onMenu(event);
    return TRUE;
  };
  signals.connect(view, "decide-policy", +decidePolicy, this);
  signals.connect(view, "create", +createWindow, this);
  signals.connect(view, "permission-request", +askPermission, this);
  signals.connect(view, "context-menu", +contextMenu, this);
}

void WebKitRefusals::setPage(const std::string& address) {
  page = address;
  begun = false;
}

bool WebKitRefusals::allows(const std::string& address) {
  if (address == page) return !std::exchange(begun, true);
  // A place within the page is no other page.
  return begun && address.starts_with(page + "#");
}

namespace {

GObjectPtr<WebKitWebContext> makeContext(const std::filesystem::path& folder) {
  const auto data = folder / "data";
  const auto cache = folder / "cache";
  const GObjectPtr<WebKitWebsiteDataManager> manager(webkit_website_data_manager_new(
      "base-data-directory", data.c_str(), "base-cache-directory", cache.c_str(), nullptr));
  return GObjectPtr<WebKitWebContext>(
      webkit_web_context_new_with_website_data_manager(manager.get()));
}

} // namespace

void WebKitProfile::drawOnProcessor() {
  // The settings alone would still have it load the drivers, which takes a tenth of a start.
  // Who has set the variable knows better.
  g_setenv(processorVariable, "1", FALSE);
}

WebKitProfile::WebKitProfile(const std::filesystem::path& folder)
    : webContext(makeContext(folder)) {
  webkit_web_context_set_cache_model(webContext.get(), WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
  const auto refuse = [](WebKitWebContext*, WebKitDownload* download, gpointer) {
    webkit_download_cancel(download);
  };
  signals.connect(webContext.get(), "download-started", +refuse, nullptr);
}

GObjectPtr<_WebKitSettings> WebKitProfile::makeSettings(bool developerExtras) const {
  GObjectPtr<WebKitSettings> settings(webkit_settings_new());
  auto* const made = settings.get();
  // One small page: drawing on the processor takes a third of the memory away and starts sooner.
  webkit_settings_set_hardware_acceleration_policy(made, WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
  webkit_settings_set_enable_developer_extras(made, developerExtras ? TRUE : FALSE);
  webkit_settings_set_enable_webgl(made, FALSE);
  webkit_settings_set_enable_webaudio(made, FALSE);
  webkit_settings_set_enable_media(made, FALSE);
  webkit_settings_set_enable_fullscreen(made, FALSE);
  webkit_settings_set_enable_page_cache(made, FALSE);
  webkit_settings_set_enable_back_forward_navigation_gestures(made, FALSE);
  webkit_settings_set_javascript_can_open_windows_automatically(made, FALSE);
  return settings;
}

} // namespace velmor
