#include "platform/linux/system/PosixProcessLauncher.h"

#include "platform/linux/system/FileDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int highestStandardDescriptor = STDERR_FILENO;
/// What is added to a signal's number to make an exit status.
constexpr int signalBase = 128;

/// What posix_spawn wants to be told in its own two records.
struct SpawnPlan {
  SpawnPlan() {
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setpgroup(&attributes, 0);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                POSIX_SPAWN_SETPGROUP);
    ::posix_spawn_file_actions_init(&actions);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
  }

  posix_spawnattr_t attributes{};
  posix_spawn_file_actions_t actions{};
};

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw LaunchError(systemMessage(errno));
    readEnd = FileDescriptor(ends[0]);
    writeEnd = FileDescriptor(ends[1]);
  }
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

/// Our end of a pipe, so that neither reading nor writing it ever blocks.
FileDescriptor nonBlocking(FileDescriptor end) {
  ::fcntl(end.get(), F_SETFL, O_NONBLOCK);
  return end;
}

/// A descriptor that becomes readable when the process has ended, by the bare system call: the
/// header of Debian 12's C library declares its function for C alone.
int endDescriptorOf(pid_t process) {
  return static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
}

/// The child's own command line, behind those of the tools which each change one thing about
/// themselves and then become the child. posix_spawn cannot say these things itself: that the
/// system kills the child with its parent, and that others go first on the processor.
std::vector<std::string> commandLine(const ChildProcess& child) {
  std::vector<std::string> line;
  // What a tool could not start either fails below, with the system's own words.
  const bool canStart = ::access(child.executable.c_str(), X_OK) == 0;
  const auto add = [&](bool isWanted, const std::vector<std::string>& tool) {
    if (isWanted && canStart && ::access(tool.front().c_str(), X_OK) == 0)
      line.insert(line.end(), tool.begin(), tool.end());
  };
  add(child.isInBackground, {"/usr/bin/nice", "-n", "10", "--"});
  add(child.endsWithVelmor, {"/usr/bin/setpriv", "--pdeathsig", "KILL", "--"});
  line.push_back(child.executable);
  line.insert(line.end(), child.arguments.begin(), child.arguments.end());
  return line;
}

/// Velmor's own environment and the child's variables, as NAME=VALUE.
std::vector<std::string> environmentOf(const ChildProcess& child) {
  std::vector<std::string> entries;
  for (char** own = environ; *own != nullptr; ++own) {
    const std::string entry = *own;
    if (!child.variables.contains(entry.substr(0, entry.find('=')))) entries.push_back(entry);
  }
  for (const auto& [name, value] : child.variables)
    entries.push_back(name + "=" + value);
  return entries;
}

/// The texts as the system takes them; they point into `line`.
std::vector<char*> argumentList(std::vector<std::string>& line) {
  std::vector<char*> list;
  list.reserve(line.size() + 1);
  for (auto& argument : line)
    list.push_back(argument.data());
  list.push_back(nullptr);
  return list;
}

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

  /// Counts a child that cannot be made to end as ended by SIGKILL, and lets go of it.
  [[nodiscard]] int abandon();

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

SpawnedChild::SpawnedChild(const ChildProcess& child) {
  SpawnPlan plan;
  std::optional<Pipe> inputPipe;
  std::optional<Pipe> errorPipe;
  Pipe outputPipe;
  if (child.input) {
    inputPipe.emplace();
    ::posix_spawn_file_actions_adddup2(&plan.actions, inputPipe->readEnd.get(), STDIN_FILENO);
  } else {
    ::posix_spawn_file_actions_addopen(&plan.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  if (!child.mergeErrorOutput) errorPipe.emplace();
  const auto& errorEnd = errorPipe ? errorPipe->writeEnd : outputPipe.writeEnd;
  ::posix_spawn_file_actions_adddup2(&plan.actions, outputPipe.writeEnd.get(), STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&plan.actions, errorEnd.get(), STDERR_FILENO);
  ::posix_spawn_file_actions_addclosefrom_np(&plan.actions, highestStandardDescriptor + 1);

  auto line = commandLine(child);
  auto environment = environmentOf(child);
  const int error = ::posix_spawn(&process, line.front().c_str(), &plan.actions, &plan.attributes,
                                  argumentList(line).data(), argumentList(environment).data());
  if (error != 0) throw LaunchError(systemMessage(error));
  endEvent = FileDescriptor(endDescriptorOf(process));
  if (!endEvent) {
    const int reason = errno;
    endNow();
    throw LaunchError(systemMessage(reason));
  }
  output = nonBlocking(std::move(outputPipe.readEnd));
  if (errorPipe) errorOutput = nonBlocking(std::move(errorPipe->readEnd));
  if (inputPipe) input = nonBlocking(std::move(inputPipe->writeEnd));
}

SpawnedChild::~SpawnedChild() {
  if (!status) endNow();
}

void SpawnedChild::endNow() {
  signal(SIGKILL);
  static_cast<void>(collect());
}

void SpawnedChild::signal(int number) const {
  ::kill(-process, number);
}

int SpawnedChild::collect() {
  int ending = 0;
  while (::waitpid(process, &ending, 0) < 0 && errno == EINTR) {
  }
  status = WIFEXITED(ending) ? WEXITSTATUS(ending) : signalBase + WTERMSIG(ending);
  return *status;
}

int SpawnedChild::abandon() {
  status = signalBase + SIGKILL;
  return *status;
}

constexpr milliseconds patience{300};
constexpr milliseconds longestWait = std::chrono::hours{1};
constexpr std::size_t chunkSize = 65536;
/// The largest pipe that a program without privileges can make holds this many chunks.
constexpr int chunksInFullPipe = 16;

/// That much from now, in a range that the clock can hold.
steady_clock::time_point momentAfter(std::chrono::duration<double> time) {
  constexpr std::chrono::duration<double> longest = std::chrono::hours{24 * 365};
  const auto wait = std::clamp(time, std::chrono::duration<double>{0}, longest);
  return steady_clock::now() + std::chrono::duration_cast<steady_clock::duration>(wait);
}

/// A descriptor that becomes readable once stop is requested, to be waited for among others.
class StopEvent {
public:
  explicit StopEvent(std::stop_token token)
      : event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
      , callback(std::move(token), [this] { ::eventfd_write(event.get(), 1); }) {}

  [[nodiscard]] int descriptor() const { return event.get(); }

private:
  FileDescriptor event;
  std::stop_callback<std::function<void()>> callback;
};

/// Runs one child: feeds its input and drains its outputs until it has ended.
class ChildConversation {
public:
  /// Starts the child. Throws LaunchError.
  ChildConversation(const ChildProcess& program, const StopEvent& stopEvent);

  /// Waits for the child. At its time limit, or once stop is requested, it is asked to end, and
  /// soon made to. Throws LaunchError when it took too long.
  [[nodiscard]] ChildResult toItsEnd();

private:
  using Moment = steady_clock::time_point;

  void waitForNews();
  void writeInput();
  /// What comes next has come: the time limit, or the end of the child's patience.
  void timeHasCome();
  void send(int signal);
  [[nodiscard]] int remainingMilliseconds() const;
  /// Takes one chunk of what is there, which keeps a child that never stops printing from keeping
  /// everything else waiting.
  static void drain(FileDescriptor& source, std::string& collected);

  const StopEvent& stop;
  SpawnedChild child;
  std::string_view unwritten;
  ChildResult result;
  /// How the child is being ended.
  enum class Ending { None, Asked, Made, GivenUp };

  bool ended = false;
  bool tookTooLong = false;
  Ending ending = Ending::None;
  /// When the next step towards its end is due.
  Moment due;
};

ChildConversation::ChildConversation(const ChildProcess& program, const StopEvent& stopEvent)
    : stop(stopEvent), child(program), due(momentAfter(program.timeLimit)) {
  if (program.input) unwritten = *program.input;
}

ChildResult ChildConversation::toItsEnd() {
  while (!ended && ending != Ending::GivenUp) {
    if (unwritten.empty()) child.input.close();
    waitForNews();
    writeInput();
    drain(child.output, result.output);
    drain(child.errorOutput, result.errorOutput);
    if (steady_clock::now() >= due) timeHasCome();
  }
  // What the child printed is in the pipes by now. Their end is not waited for: something that
  // the child left running may keep them open, and may even go on writing.
  for (int round = 0; round < chunksInFullPipe; ++round) {
    drain(child.output, result.output);
    drain(child.errorOutput, result.errorOutput);
  }
  result.exitStatus = ended ? child.collect() : child.abandon();
  if (tookTooLong) throw LaunchError("The program was still running after its time limit.");
  return std::move(result);
}

void ChildConversation::waitForNews() {
  // Descriptors that are closed are -1, which poll passes over.
  std::array<pollfd, 5> sources = {{
      {child.endDescriptor(), POLLIN, 0},
      {child.output.get(), POLLIN, 0},
      {child.errorOutput.get(), POLLIN, 0},
      {child.input.get(), POLLOUT, 0},
      {ending == Ending::None ? stop.descriptor() : -1, POLLIN, 0},
  }};
  if (::poll(sources.data(), sources.size(), remainingMilliseconds()) < 0) return;
  if (sources.front().revents != 0) ended = true;
  if (sources.back().revents != 0) send(SIGTERM);
}

void ChildConversation::writeInput() {
  while (child.input && !unwritten.empty()) {
    const auto count = ::write(child.input.get(), unwritten.data(), unwritten.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return;
    // A child that does not want all of its input is no failure.
    unwritten.remove_prefix(count < 0 ? unwritten.size() : static_cast<std::size_t>(count));
  }
}

void ChildConversation::timeHasCome() {
  if (ending == Ending::None) tookTooLong = true;
  if (ending == Ending::Made)
    ending = Ending::GivenUp;
  else
    send(ending == Ending::None ? SIGTERM : SIGKILL);
}

void ChildConversation::send(int signal) {
  ending = signal == SIGTERM ? Ending::Asked : Ending::Made;
  due = steady_clock::now() + patience;
  child.signal(signal);
}

int ChildConversation::remainingMilliseconds() const {
  const auto remaining = std::chrono::ceil<milliseconds>(due - steady_clock::now());
  return static_cast<int>(std::clamp(remaining, milliseconds{0}, longestWait).count());
}

void ChildConversation::drain(FileDescriptor& source, std::string& collected) {
  if (!source) return;
  std::array<char, chunkSize> chunk{};
  const auto count = ::read(source.get(), chunk.data(), chunk.size());
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (count <= 0) {
    source.close();
    return;
  }
  const auto room = ProcessLauncher::outputLimit - collected.size();
  collected.append(chunk.data(), std::min(room, static_cast<std::size_t>(count)));
}

} // namespace

void ignoreBrokenPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

PosixProcessLauncher::PosixProcessLauncher(std::stop_token quitToken) : quit(std::move(quitToken)) {
  ignoreBrokenPipes();
}

ChildResult PosixProcessLauncher::run(const ChildProcess& child) {
  if (quit.stop_requested()) throw LaunchError(systemMessage(ECANCELED));
  const StopEvent stop(quit);
  return ChildConversation(child, stop).toItsEnd();
}

} // namespace velmor
