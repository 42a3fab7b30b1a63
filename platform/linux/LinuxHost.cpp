#include "platform/linux/LinuxHost.h"

#include "platform/linux/LinuxRecord.h"

#include <glib-unix.h>

#include <csignal>

namespace velmor {

LinuxHost::LinuxHost()
    : bundle(FolderBundle::folderOfExecutable(FolderBundle::runningExecutable()))
    , log(environment)
    , processes(quit.get_token())
    , http(quit.get_token())
    , record(linuxRecord())
    , workspace(mainLoop, quit, log)
    , input(mainLoop)
    , parts{.mainLoop = mainLoop,
            .clock = clock,
            .environment = environment,
            .files = files,
            .bundle = bundle,
            .log = log,
            .processes = processes,
            .http = http,
            .applications = applications,
            .mediaRemote = mediaRemote,
            .accessibility = accessibility,
            .windows = windows,
            .scripts = scripts,
            .workspace = workspace,
            .record = record} {}

LinuxHost::~LinuxHost() {
  for (const auto source : signalSources) {
    if (source != 0) g_source_remove(source);
  }
  // Threads that still wait for something would keep the main loop from being destroyed.
  quit.request_stop();
}

std::optional<Desktop> LinuxHost::openDesktop() {
  if (!desktop) desktop = GtkDesktop::open(parts);
  if (!desktop) return std::nullopt;
  mainLoop.serveDisplayWhileOccupied(true);
  return Desktop{.windows = *desktop, .application = *desktop};
}

void LinuxHost::run() {
  mainLoop.run();
}

void LinuxHost::onTerminationRequest(MainLoop::Work work) {
  terminationWork = std::move(work);
  const auto requested = [](gpointer data) -> gboolean {
    auto& host = *static_cast<LinuxHost*>(data);
    host.mainLoop.post(MainLoop::Lane::Display, host.terminationWork);
    return G_SOURCE_CONTINUE;
  };
  if (signalSources.front() != 0) return;
  signalSources = {g_unix_signal_add(SIGTERM, requested, this),
                   g_unix_signal_add(SIGINT, requested, this)};
}

std::unique_ptr<Host> makeHost() {
  return std::make_unique<LinuxHost>();
}

} // namespace velmor
