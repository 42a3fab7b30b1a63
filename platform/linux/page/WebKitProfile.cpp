#include "platform/linux/page/WebKitProfile.h"

#include <webkit2/webkit2.h>

namespace velmor {

template <>
struct GlibRelease<WebKitUserScript> {
  void operator()(WebKitUserScript* script) const { webkit_user_script_unref(script); }
};

namespace {

GlibPtr<WebKitWebContext> makeContext(const std::filesystem::path& folder) {
  const auto data = folder / "data";
  const auto cache = folder / "cache";
  const GlibPtr<WebKitWebsiteDataManager> manager(webkit_website_data_manager_new(
      "base-data-directory", data.c_str(), "base-cache-directory", cache.c_str(), nullptr));
  return GlibPtr<WebKitWebContext>(webkit_web_context_new_with_website_data_manager(manager.get()));
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

GlibPtr<_WebKitSettings> WebKitProfile::makeSettings(bool developerExtras) const {
  GlibPtr<WebKitSettings> settings(webkit_settings_new());
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

void WebKitProfile::addScript(_WebKitUserContentManager* manager, const char* source,
                              const char* world) {
  constexpr auto frames = WEBKIT_USER_CONTENT_INJECT_TOP_FRAME;
  constexpr auto time = WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START;
  const GlibPtr<WebKitUserScript> script(
      world ? webkit_user_script_new_for_world(source, frames, time, world, nullptr, nullptr)
            : webkit_user_script_new(source, frames, time, nullptr, nullptr));
  webkit_user_content_manager_add_script(manager, script.get());
}

} // namespace velmor
