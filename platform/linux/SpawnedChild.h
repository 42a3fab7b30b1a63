#pragma once

#include "platform/ProcessLauncher.h"
#include "platform/linux/FileDescriptor.h"

#include <sys/types.h>

#include <optional>

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

} // namespace velmor
