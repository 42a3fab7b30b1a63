#include "platform/linux/desktop/GioWorkspace.h"

#include "platform/SystemLog.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/page/WebKitProfile.h"

#include <gio/gio.h>

namespace velmor {

GioWorkspace::GioWorkspace(GlibMainLoop& mainLoop, std::stop_source quitSource,
                           SystemLog& systemLog)
    : loop(mainLoop), quit(std::move(quitSource)), log(systemLog) {}

void GioWorkspace::openURL(const std::string& url) {
  if (!hasScheme(url)) return;
  const GObjectPtr<GAppLaunchContext> context(g_app_launch_context_new());
  // How this window is drawn is nothing to a browser.
  g_app_launch_context_unsetenv(context.get(), WebKitProfile::processorVariable);
  GError* error = nullptr;
  if (g_app_info_launch_default_for_uri(url.c_str(), context.get(), &error) != FALSE) return;
  log.write(std::string("Velmor: could not open a link: ") + error->message);
  g_error_free(error);
}

void GioWorkspace::terminate() {
  quit.request_stop();
  loop.quit();
}

bool hasScheme(const std::string& url) {
  char* scheme = g_uri_parse_scheme(url.c_str());
  g_free(scheme);
  return scheme != nullptr;
}

} // namespace velmor
