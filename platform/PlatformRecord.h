#pragma once

#include "platform/PlayerScript.h"
#include "platform/ProcessLauncher.h"

#include <functional>
#include <string>
#include <vector>

namespace velmor {

/// Where tools lie and which devices there are: what differs between systems in little more than
/// its values.
struct PlatformRecord {
  std::string lsof;
  std::string which;
  /// Tried in this order; the first that is an executable file is used.
  std::vector<std::string> ffmpegLocations;
  /// ffmpeg's input format for capturing sound, and options that must stand before the input.
  std::string captureFormat;
  std::vector<std::string> captureOptions;
  /// Loopback devices, tried in this order.
  std::vector<std::string> captureDevices;
  /// Names the loopback devices that exist at the moment, to be tried when those fail; never a
  /// microphone. May run a child; any thread.
  std::function<std::vector<std::string>()> existingCaptureDevices = [] {
    return std::vector<std::string>{};
  };
  /// Answers media players' scripts on a system that has no script tool, in the form of that
  /// tool's result. Empty where the tool is to be run. Any thread; may wait for the player.
  std::function<ChildResult(const PlayerScript&)> answerScript = nullptr;
};

} // namespace velmor
