#pragma once

#include "platform/linux/SpawnedChild.h"

#include <chrono>
#include <string_view>

namespace velmor {

class StopEvent;

/// Runs one child: feeds its input and drains its outputs until it has ended.
class ChildConversation {
public:
  /// Starts the child. Throws LaunchError.
  ChildConversation(const ChildProcess& program, const StopEvent& stopEvent);

  /// Waits for the child. Once stop is requested it is asked to end, and soon made to.
  [[nodiscard]] ChildResult toItsEnd();

private:
  using Moment = std::chrono::steady_clock::time_point;

  void waitForNews();
  void writeInput();
  void askToEnd();
  void makeEnd();
  [[nodiscard]] int remainingMilliseconds() const;
  /// Takes one chunk of what is there, which keeps a child that never stops printing from keeping
  /// everything else waiting.
  static void drain(FileDescriptor& source, std::string& collected);

  const StopEvent& stop;
  SpawnedChild child;
  std::string_view unwritten;
  ChildResult result;
  bool ended = false;
  /// When the child's patience is over; nothing while it may take its time.
  std::optional<Moment> killTime;
};

} // namespace velmor
