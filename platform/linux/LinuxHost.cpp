#include "platform/linux/LinuxHost.h"

#include "platform/linux/desktop/SoundServer.h"
#include "platform/linux/media/MprisScripts.h"
#include "platform/linux/page/WebKitProfile.h"

#include <unistd.h>

#include <cstdlib>

namespace velmor {

namespace {

/// What is left of three seconds is for starting and ending a process on a busy machine.
constexpr std::chrono::milliseconds timeToEnd{2500};

/// Where tools lie on Linux, and how sound is captured there; media players are asked over
/// the session bus. Launcher and players must outlive the record.
PlatformRecord linuxRecord(ProcessLauncher& processes, MprisBusSource& players) {
  return {.lsof = "/usr/bin/lsof",
          .which = "/usr/bin/which",
          .ffmpegLocations = {"/usr/bin/ffmpeg", "/usr/local/bin/ffmpeg"},
          .captureFormat = "pulse",
          // Otherwise the time stamps of the sound server cut the beginning of the sample off.
          .captureOptions = {"-wallclock", "0"},
          .captureDevices = {"@DEFAULT_MONITOR@"},
          .existingCaptureDevices = [&processes] { return SoundServer::outputMonitors(processes); },
          .answerScript = [&players](const auto& script) { return answerScript(script, players); }};
}

} // namespace

LinuxHost::LinuxHost()
    : deadline(timeToEnd)
    , bundle(FolderBundle::folderOfExecutable(FolderBundle::runningExecutable()))
    , log(environment)
    , launcher(quit.get_token())
    , http(quit.get_token())
    , record(linuxRecord(processes, players))
    // How our window is drawn is nothing to a browser.
    , workspace(mainLoop, environment, quit, deadline, log, {WebKitProfile::processorVariable})
    , input(mainLoop)
    , local(environment, mainLoop)
    , parts{.mainLoop = mainLoop,
            .clock = clock,
            .environment = environment,
            .files = files,
            .fileWatcher = fileWatcher,
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

bool LinuxHost::isErrorTerminal() const {
  return isatty(STDERR_FILENO) == 1;
}

std::optional<Desktop> LinuxHost::openDesktop() {
  if (!desktop) desktop = GtkDesktop::open(parts);
  if (!desktop) return std::nullopt;
  // A window has nothing to report; a command that was cut short has failed.
  deadline.setExitStatus(EXIT_SUCCESS);
  return Desktop{.windows = *desktop, .application = *desktop};
}

void LinuxHost::run() {
  mainLoop.run();
}

void LinuxHost::onTerminationRequest(MainLoop::Work work) {
  termination.emplace(
      [this, posted = std::move(work)] { mainLoop.post(MainLoop::Lane::Display, posted); });
}

void LinuxHost::onOutputClosed(MainLoop::Work work) {
  output.watch(
      [this, posted = std::move(work)] { mainLoop.post(MainLoop::Lane::Display, posted); });
}

std::unique_ptr<Host> makeHost() {
  return std::make_unique<LinuxHost>();
}

} // namespace velmor
