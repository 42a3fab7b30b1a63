#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmor {

/// A child program to run: an executable's path and its arguments, never a shell line.
struct ChildProcess {
  /// A path; nothing is searched for.
  std::string executable;
  /// Passed on unchanged, without the program's own name.
  std::vector<std::string> arguments;
  /// Written to standard input, which is then closed; without it standard input is empty.
  std::optional<std::string> input = std::nullopt;
  /// Sends standard error where standard output goes, in the order of writing; `errorOutput` of the
  /// result is "" then.
  bool mergeErrorOutput = false;
  /// Ends the child when Velmor ends, even when Velmor is killed or crashes.
  bool endsWithVelmor = false;
  /// Lets everything else that wants the processor go first.
  bool isInBackground = false;
  /// Environment variables that the child gets besides, or instead of, those that Velmor has.
  std::map<std::string, std::string> variables = {};
  /// How long it may take at most: well over what it does take, for a child that hangs.
  std::chrono::duration<double> timeLimit{5};
};

/// How a child program ended and what it printed.
struct ChildResult {
  /// The exit status; 128 and the signal's number for a child that a signal ended.
  int exitStatus = 0;
  /// Raw bytes. Both texts are cut after `ProcessLauncher::outputLimit` bytes.
  std::string output;
  std::string errorOutput;
};

/// The child could not be started at all, with the system's own message, or did not end within its
/// time limit, with a sentence for the user. What it had printed by then is lost.
class LaunchError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Starts child programs, which get the environment without API keys and other secrets. Safe to use
/// from any thread.
class ProcessLauncher {
public:
  /// In bytes, for each of the two outputs.
  static constexpr std::size_t outputLimit = std::size_t{4} << 20;

  virtual ~ProcessLauncher() = default;

  /// Runs the child to its end and returns what it printed. Its outputs are drained while it runs;
  /// what it leaves running is not waited for. At the time limit, and when Velmor quits meanwhile,
  /// the child is asked to end and soon made to; one that cannot be ended is left behind. The call
  /// returns in any case within a second. Throws LaunchError.
  [[nodiscard]] virtual ChildResult run(const ChildProcess& child) = 0;
};

} // namespace velmor
