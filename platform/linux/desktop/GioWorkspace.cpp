#include "platform/linux/desktop/GioWorkspace.h"

#include "platform/SystemLog.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/loop/GlibMainLoop.h"
#include "platform/linux/loop/ProgramEnd.h"

#include <gio/gio.h>

#include <utility>

namespace velmor {

namespace {

void launch(const std::string& url, const std::vector<std::string>& withoutVariables,
            SystemLog& log) {
  const GlibPtr<GAppLaunchContext> context(g_app_launch_context_new());
  for (const auto& variable : withoutVariables)
    g_app_launch_context_unsetenv(context.get(), variable.c_str());
  GError* failure = nullptr;
  if (g_app_info_launch_default_for_uri(url.c_str(), context.get(), &failure) != FALSE) return;
  const GlibPtr<GError> error(failure);
  log.write(std::string("Velmor: could not open a link: ") + error->message);
}

} // namespace

GioWorkspace::GioWorkspace(GlibMainLoop& mainLoop, std::stop_source quitSource,
                           EndDeadline& endDeadline, SystemLog& systemLog,
                           std::vector<std::string> ownVariables)
    : loop(mainLoop)
    , quit(std::move(quitSource))
    , deadline(endDeadline)
    , log(systemLog)
    , hidden(std::move(ownVariables)) {}

void GioWorkspace::openURL(const std::string& url) {
  if (!GlibPtr<char>(g_uri_parse_scheme(url.c_str()))) return;
  // Finding the program reads files of others, which may take for ever. Nothing is told of it.
  loop.startWorker([url, without = hidden, &log = log] { launch(url, without, log); }, [] {});
}

void GioWorkspace::willTerminate() {
  deadline.start();
}

void GioWorkspace::terminate() {
  willTerminate();
  quit.request_stop();
  loop.quit();
}

} // namespace velmor
