#include "platform/linux/LinuxHost.h"

#include "platform/linux/LinuxRecord.h"
#include "platform/linux/page/WebKitProfile.h"

namespace velmor {

LinuxHost::LinuxHost()
    : bundle(FolderBundle::folderOfExecutable(FolderBundle::runningExecutable()))
    , log(environment)
    , launcher(quit.get_token())
    , http(quit.get_token())
    , record(linuxRecord(processes, players))
    // How our window is drawn is nothing to a browser.
    , workspace(mainLoop, quit, log, {WebKitProfile::processorVariable})
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
            .workspace = workspace,
            .record = record} {}

LinuxHost::~LinuxHost() {
  // Threads that still wait for something would keep the main loop from being destroyed.
  quit.request_stop();
}

std::optional<Desktop> LinuxHost::openDesktop() {
  if (!desktop) desktop = GtkDesktop::open(parts);
  if (!desktop) return std::nullopt;
  return Desktop{.windows = *desktop, .application = *desktop};
}

void LinuxHost::run() {
  mainLoop.run();
}

void LinuxHost::onTerminationRequest(MainLoop::Work work) {
  termination.emplace(
      [this, posted = std::move(work)] { mainLoop.post(MainLoop::Lane::Display, posted); });
}

std::unique_ptr<Host> makeHost() {
  return std::make_unique<LinuxHost>();
}

} // namespace velmor
