#include "platform/linux/LinuxRecord.h"

#include "platform/linux/desktop/SoundServer.h"
#include "platform/linux/media/MprisScripts.h"

namespace velmor {

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

} // namespace velmor
