#pragma once

#include "platform/Platform.h"
#include "tests/fakes/FakeFiles.h"
#include "tests/fakes/FakeHttp.h"
#include "tests/fakes/FakeMainLoop.h"
#include "tests/fakes/FakeMediaRemote.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/fakes/FakeSystem.h"

namespace velmor {

/// A whole system in memory, with nothing running and nothing on disk. Its record holds the values
/// of macOS.
struct FakePlatform {
  FakeMainLoop loop;
  FakeEnvironment environment;
  FakeFiles files;
  FakeFileWatcher fileWatcher;
  FakeBundle bundle;
  FakeLog log;
  FakeProcesses processes;
  FakeHttp http;
  FakeApplications applications;
  FakeMediaRemote mediaRemote;
  FakeAccessibility accessibility;
  FakeWindowList windows;
  FakeWorkspace workspace;
  PlatformRecord record{
      .lsof = "/usr/sbin/lsof",
      .which = "/usr/bin/which",
      .ffmpegLocations = {"/usr/local/bin/ffmpeg", "/opt/homebrew/bin/ffmpeg"},
      .captureFormat = "avfoundation",
      .captureOptions = {},
      .captureDevices = {":BlackHole 2ch", ":BlackHole", ":Soundflower"},
  };

  Platform platform{loop,        loop,          environment, files,     fileWatcher,
                    bundle,      log,           processes,   http,      applications,
                    mediaRemote, accessibility, windows,     workspace, record};
};

} // namespace velmor
