#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmor {

/// A child program to run: an executable's path and its arguments, never a shell line.
struct ChildProcess {
  std::string executable;
  std::vector<std::string> arguments;
  /// Written to standard input, which is then closed; without it standard input is empty.
  std::optional<std::string> input = std::nullopt;
  /// Sends standard error where standard output goes, in the order of writing.
  bool mergeErrorOutput = false;
};

/// How a child program ended and what it printed.
struct ChildResult {
  /// The exit status; 128 and the signal's number for a child that a signal ended.
  int exitStatus = 0;
  /// Raw bytes. Both texts are cut after `ProcessLauncher::outputLimit` bytes.
  std::string output;
  std::string errorOutput;
};

/// The child could not be started at all; the message is the system's own.
class LaunchError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Starts child programs. Safe to use from any thread.
class ProcessLauncher {
public:
  static constexpr std::size_t outputLimit = std::size_t{4} << 20;

  virtual ~ProcessLauncher() = default;

  /// Runs the child to its end and returns what it printed. Its outputs are drained while it
  /// runs. When Velmor quits meanwhile, the child is ended and the call returns at once.
  /// Throws LaunchError.
  [[nodiscard]] virtual ChildResult run(const ChildProcess& child) = 0;
};

} // namespace velmor
