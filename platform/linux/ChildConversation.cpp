#include "platform/linux/ChildConversation.h"

#include "platform/linux/StopEvent.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

namespace velmor {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds patience{300};
constexpr std::size_t chunkSize = 65536;
/// The largest pipe that a program without privileges can make holds this many chunks.
constexpr int chunksInFullPipe = 16;

} // namespace

ChildConversation::ChildConversation(const ChildProcess& program, const StopEvent& stopEvent)
    : stop(stopEvent), child(program) {
  if (program.input) unwritten = *program.input;
}

ChildResult ChildConversation::toItsEnd() {
  while (!ended) {
    if (unwritten.empty()) child.input.close();
    waitForNews();
    writeInput();
    drain(child.output, result.output);
    drain(child.errorOutput, result.errorOutput);
    if (killTime && steady_clock::now() >= *killTime) makeEnd();
  }
  // What the child printed is in the pipes by now. Their end is not waited for: something that
  // the child left running may keep them open, and may even go on writing.
  for (int round = 0; round < chunksInFullPipe; ++round) {
    drain(child.output, result.output);
    drain(child.errorOutput, result.errorOutput);
  }
  result.exitStatus = child.collect();
  return std::move(result);
}

void ChildConversation::waitForNews() {
  // Descriptors that are closed are -1, which poll passes over.
  std::array<pollfd, 5> sources = {{
      {child.endDescriptor(), POLLIN, 0},
      {child.output.get(), POLLIN, 0},
      {child.errorOutput.get(), POLLIN, 0},
      {child.input.get(), POLLOUT, 0},
      {killTime ? -1 : stop.descriptor(), POLLIN, 0},
  }};
  if (::poll(sources.data(), sources.size(), remainingMilliseconds()) < 0) return;
  if (sources.front().revents != 0) ended = true;
  if (sources.back().revents != 0) askToEnd();
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

void ChildConversation::askToEnd() {
  killTime = steady_clock::now() + patience;
  child.signal(SIGTERM);
}

void ChildConversation::makeEnd() {
  killTime = steady_clock::now() + patience;
  child.signal(SIGKILL);
}

int ChildConversation::remainingMilliseconds() const {
  if (!killTime) return -1;
  const auto remaining = std::chrono::ceil<milliseconds>(*killTime - steady_clock::now());
  return static_cast<int>(std::max(remaining, milliseconds{0}).count());
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

} // namespace velmor
