#pragma once

#include "platform/Host.h"
#include "platform/linux/AtspiAccessibility.h"
#include "platform/linux/CurlHttpClient.h"
#include "platform/linux/DesktopApplications.h"
#include "platform/linux/EwmhWindowList.h"
#include "platform/linux/FolderBundle.h"
#include "platform/linux/GioWorkspace.h"
#include "platform/linux/GlibMainLoop.h"
#include "platform/linux/GtkDesktop.h"
#include "platform/linux/MprisBusSource.h"
#include "platform/linux/MprisMediaRemote.h"
#include "platform/linux/MprisScriptHost.h"
#include "platform/linux/PosixEnvironment.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/PosixProcessLauncher.h"
#include "platform/linux/ProcessSetup.h"
#include "platform/linux/SessionStatus.h"
#include "platform/linux/StandardInputLines.h"
#include "platform/linux/Syslog.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/TerminationSignals.h"

namespace velmor {

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
  [[nodiscard]] std::optional<Desktop> openDesktop() override;
  void run() override;
  void onTerminationRequest(MainLoop::Work work) override;

private:
  // First of all, since it takes secrets away before anything else looks at the environment.
  PosixEnvironment environment;
  ProcessSetup setup{environment};
  std::stop_source quit;
  SystemClock clock;
  PosixFileManager files;
  FolderBundle bundle;
  Syslog log;
  PosixProcessLauncher processes;
  CurlHttpClient http;
  MprisBusSource players{environment, quit.get_token()};
  DesktopApplications applications{environment, players};
  MprisMediaRemote mediaRemote{players};
  AtspiAccessibility accessibility{environment, quit.get_token()};
  EwmhWindowList windows;
  MprisScriptHost scripts{players};
  SessionStatus status{environment, quit.get_token()};
  PlatformRecord record;
  // Behind what its worker threads may use: it waits for them when it is destroyed.
  GlibMainLoop mainLoop;
  GioWorkspace workspace;
  StandardInputLines input;
  Platform parts;
  /// Null until it is opened.
  std::unique_ptr<GtkDesktop> desktop;
  /// Nothing until somebody wants to hear of them. The last member: its thread uses the others.
  std::optional<TerminationSignals> termination;
};

} // namespace velmor
