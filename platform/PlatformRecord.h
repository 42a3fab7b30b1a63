#pragma once

#include <string>
#include <vector>

namespace velmor {

/// Where tools lie and which devices there are: what differs between systems by value alone.
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
};

} // namespace velmor
