#pragma once

#include "platform/ProcessLauncher.h"
#include "platform/linux/system/FileDescriptor.h"

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string_view>

namespace velmor {

/// A running child program and our ends of its pipes. Destroying it ends the child's whole process
/// group at once when it still runs.
class SpawnedChild {
public:
  /// Throws LaunchError.
  explicit SpawnedChild(const ChildProcess& child);
  SpawnedChild(const SpawnedChild&) = delete;
  SpawnedChild& operator=(const SpawnedChild&) = delete;
  ~SpawnedChild();

  /// Becomes readable when the child has ended.
  [[nodiscard]] int endDescriptor() const { return endEvent.get(); }

  /// Sends a signal to the child and all that it has started in its group.
  void signal(int number) const;

  /// The exit status of a child that has ended.
  [[nodiscard]] int collect();

  /// Non-blocking; `input` and `errorOutput` are closed from the start when there is none.
  FileDescriptor input;
  FileDescriptor output;
  FileDescriptor errorOutput;

private:
  void endNow();

  pid_t process = 0;
  FileDescriptor endEvent;
  std::optional<int> status;
};

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
