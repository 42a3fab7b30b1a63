#pragma once

#include "platform/Clock.h"
#include "platform/Host.h"
#include "platform/linux/ProcessSetup.h"
#include "platform/linux/SessionStatus.h"
#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/desktop/DesktopApplications.h"
#include "platform/linux/desktop/EwmhWindowList.h"
#include "platform/linux/desktop/GioWorkspace.h"
#include "platform/linux/http/CurlHttpClient.h"
#include "platform/linux/loop/GlibMainLoop.h"
#include "platform/linux/loop/InotifyWatcher.h"
#include "platform/linux/loop/ProgramEnd.h"
#include "platform/linux/loop/StandardInputLines.h"
#include "platform/linux/loop/UnixService.h"
#include "platform/linux/media/MprisBus.h"
#include "platform/linux/media/MprisMediaRemote.h"
#include "platform/linux/system/FolderBundle.h"
#include "platform/linux/system/PosixEnvironment.h"
#include "platform/linux/system/PosixFileManager.h"
#include "platform/linux/system/PosixProcessLauncher.h"
#include "platform/linux/system/RememberingLauncher.h"
#include "platform/linux/system/Syslog.h"
#include "platform/linux/window/GtkDesktop.h"

namespace velmor {

/// The system's wall clock.
class SystemClock final : public Clock {
public:
  [[nodiscard]] TimePoint now() const override { return std::chrono::system_clock::now(); }
};

/// The Linux backend.
class LinuxHost final : public Host {
public:
  LinuxHost();
  LinuxHost(const LinuxHost&) = delete;
  LinuxHost& operator=(const LinuxHost&) = delete;
  ~LinuxHost() override;

  [[nodiscard]] const Platform& platform() const override { return parts; }
  [[nodiscard]] LineInput& standardInput() override { return input; }
  [[nodiscard]] SystemStatus& systemStatus() override { return status; }
  [[nodiscard]] bool isErrorTerminal() const override;
  [[nodiscard]] LocalService& localService() override { return local; }
  [[nodiscard]] std::optional<Desktop> openDesktop() override;
  void run() override;
  void onTerminationRequest(MainLoop::Work work) override;
  void onOutputClosed(MainLoop::Work work) override;

private:
  // First of all, since it takes secrets away before anything else looks at the environment.
  PosixEnvironment environment;
  ProcessSetup setup{environment};
  // Called off last of all, when nothing is left that could hang.
  EndDeadline deadline;
  std::stop_source quit;
  SystemClock clock;
  PosixFileManager files;
  InotifyWatcher fileWatcher;
  FolderBundle bundle;
  Syslog log;
  PosixProcessLauncher launcher;
  RememberingLauncher processes{launcher};
  CurlHttpClient http;
  MprisBusSource players{environment, quit.get_token()};
  WindowProperties properties;
  DesktopApplications applications{environment, properties, players};
  MprisMediaRemote mediaRemote{players};
  AtspiAccessibility accessibility{environment, properties, quit.get_token()};
  EwmhWindowList windows{properties};
  SessionStatus status{environment, properties, quit.get_token()};
  PlatformRecord record;
  // Behind what its worker threads may use: it waits for them when it is destroyed.
  GlibMainLoop mainLoop;
  GioWorkspace workspace;
  StandardInputLines input;
  OutputWatch output;
  UnixService local;
  Platform parts;
  /// Null until it is opened.
  std::unique_ptr<GtkDesktop> desktop;
  /// Nothing until somebody wants to hear of them.
  std::optional<TerminationSignals> termination;
};

} // namespace velmor
