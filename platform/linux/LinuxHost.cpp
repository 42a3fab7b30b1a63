#include "platform/linux/LinuxHost.h"

#include "platform/linux/LinuxRecord.h"
#include "platform/linux/page/WebKitProfile.h"

namespace velmor {

LinuxHost::LinuxHost()
    : bundle(FolderBundle::folderOfExecutable(FolderBundle::runningExecutable()))
    , log(environment)
    , processes(quit.get_token())
    , http(quit.get_token())
    , record(linuxRecord(processes))
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
            .scripts = scripts,
            .workspace = workspace,
            .record = record} {}

LinuxHost::~LinuxHost() {
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
  // Without a window the main thread itself waits for children and answers: nothing that is posted
  // to it ends that. With one it is free, and the window closes before the waiting ends.
  const bool endWaiting = !desktop;
  termination.emplace([this, endWaiting, posted = std::move(work)] {
    if (endWaiting) quit.request_stop();
    mainLoop.post(MainLoop::Lane::Display, posted);
  });
}

std::unique_ptr<Host> makeHost() {
  return std::make_unique<LinuxHost>();
}

} // namespace velmor
