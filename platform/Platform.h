#pragma once

#include "platform/PlatformRecord.h"

#include <type_traits>

namespace velmor {

class Accessibility;
class Bundle;
class Clock;
class Environment;
class FileManager;
class FileWatcher;
class HttpClient;
class MainLoop;
class MediaRemote;
class ProcessLauncher;
class RunningApplications;
class SystemLog;
class WindowList;
class Workspace;

/// Everything that Velmor asks of the operating system, in one place. A plain record of
/// references: who gets it does not own what it names, and its owner outlives all users.
struct Platform {
  MainLoop& mainLoop;
  Clock& clock;
  Environment& environment;
  FileManager& files;
  FileWatcher& fileWatcher;
  Bundle& bundle;
  SystemLog& log;
  ProcessLauncher& processes;
  HttpClient& http;
  RunningApplications& applications;
  MediaRemote& mediaRemote;
  Accessibility& accessibility;
  WindowList& windows;
  Workspace& workspace;
  const PlatformRecord& record;

  /// The same system with one part exchanged, such as one that watches or hastens the real one.
  template <typename Other>
  [[nodiscard]] Platform with(Other& other) const {
    const auto part = [&other]<typename Part>(Part& own) -> Part& {
      if constexpr (std::is_base_of_v<Part, Other>) {
        return other;
      } else {
        return own;
      }
    };
    return {.mainLoop = part(mainLoop),
            .clock = part(clock),
            .environment = part(environment),
            .files = part(files),
            .fileWatcher = part(fileWatcher),
            .bundle = part(bundle),
            .log = part(log),
            .processes = part(processes),
            .http = part(http),
            .applications = part(applications),
            .mediaRemote = part(mediaRemote),
            .accessibility = part(accessibility),
            .windows = part(windows),
            .workspace = part(workspace),
            .record = record};
  }
};

} // namespace velmor
