#include "platform/linux/LinuxRecord.h"

namespace velmor {

PlatformRecord linuxRecord() {
  return {.lsof = "/usr/bin/lsof",
          .which = "/usr/bin/which",
          .ffmpegLocations = {"/usr/bin/ffmpeg", "/usr/local/bin/ffmpeg"},
          .captureFormat = "pulse",
          // Otherwise the time stamps of the sound server cut the beginning of the sample off.
          .captureOptions = {"-wallclock", "0"},
          .captureDevices = {"@DEFAULT_MONITOR@"}};
}

} // namespace velmor
