#pragma once

#include "platform/Desktop.h"
#include "platform/MainLoop.h"
#include "platform/Platform.h"

#include <memory>
#include <optional>

namespace velmor {

class LineInput;
class LocalService;
class SystemStatus;

/// The system's backend: it owns everything that a Platform refers to. Each system links one.
class Host {
public:
  virtual ~Host() = default;

  [[nodiscard]] virtual const Platform& platform() const = 0;

  [[nodiscard]] virtual LineInput& standardInput() = 0;

  [[nodiscard]] virtual SystemStatus& systemStatus() = 0;

  /// Somebody sees at once what is written to standard error.
  [[nodiscard]] virtual bool isErrorTerminal() const = 0;

  /// How this program and the running window find each other.
  [[nodiscard]] virtual LocalService& localService() = 0;

  /// Connects to the user's display; nothing when there is none. What the record names lives as
  /// long as the host.
  [[nodiscard]] virtual std::optional<Desktop> openDesktop() = 0;

  /// Runs the main loop until `Workspace::terminate` is called. Every blocking wait of the seam
  /// ends at that call.
  virtual void run() = 0;

  /// Calls `work` in the display lane each time the system asks the program to end (TERM, INT, or
  /// HUP when the terminal closes), while the loop runs. A second call replaces the first.
  virtual void onTerminationRequest(MainLoop::Work work) = 0;

  /// Calls `work` once in the display lane when nobody can read standard output any more, such as
  /// a pipe whose reader has ended. Call it once only.
  virtual void onOutputClosed(MainLoop::Work work) = 0;
};

/// Makes the backend of the system that this program was built for. Call it first in main, before
/// there is any other thread: it takes secrets out of the environment that children inherit.
[[nodiscard]] std::unique_ptr<Host> makeHost();

} // namespace velmor
