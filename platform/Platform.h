#pragma once

#include "platform/PlatformRecord.h"

namespace velmor {

class Accessibility;
class Bundle;
class Clock;
class Environment;
class FileManager;
class HttpClient;
class MainLoop;
class MediaRemote;
class ProcessLauncher;
class RunningApplications;
class ScriptHost;
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
  Bundle& bundle;
  SystemLog& log;
  ProcessLauncher& processes;
  HttpClient& http;
  RunningApplications& applications;
  MediaRemote& mediaRemote;
  Accessibility& accessibility;
  WindowList& windows;
  ScriptHost& scripts;
  Workspace& workspace;
  const PlatformRecord& record;
};

} // namespace velmor
