#include "platform/linux/system/ProcessTable.h"

#include "platform/linux/system/FileDescriptor.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace velmor {

namespace {

/// More than any name has: the kernel's own processes show 64 bytes at most.
constexpr std::size_t nameRoom = 256;

/// The number that a folder of /proc is named after; nothing for all others.
std::optional<std::int32_t> processNumber(std::string_view folder) {
  std::int32_t number = 0;
  const char* const end = folder.data() + folder.size();
  const auto [stop, error] = std::from_chars(folder.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

enum class Reading { Read, Ended, Failed };

/// Reads the name of a process from its folder, in one piece as the kernel gives it.
Reading readName(int processes, const char* process, std::string& name) {
  const auto path = std::string(process) + "/comm";
  const FileDescriptor file(::openat(processes, path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return errno == ENOENT || errno == ESRCH ? Reading::Ended : Reading::Failed;
  std::array<char, nameRoom> text{};
  const auto count = ::read(file.get(), text.data(), text.size());
  if (count <= 0) return count == 0 || errno == ESRCH ? Reading::Ended : Reading::Failed;
  const auto length = static_cast<std::size_t>(count);
  name.assign(text.data(), text[length - 1] == '\n' ? length - 1 : length);
  return Reading::Read;
}

} // namespace

std::shared_ptr<const ProcessTable::Names> ProcessTable::names() {
  const std::lock_guard guard(mutex);
  if (!isFresh()) {
    lastStart = std::chrono::steady_clock::now();
    last = look();
    lastEnd = std::chrono::steady_clock::now();
  }
  return last;
}

bool ProcessTable::isFresh() const {
  if (!last || freshness == freshness.zero()) return false;
  const auto age = std::chrono::steady_clock::now() - lastEnd;
  return age < freshness || age < lastEnd - lastStart;
}

std::shared_ptr<const ProcessTable::Names> ProcessTable::look() {
  if (folder) {
    ::rewinddir(folder.get());
  } else {
    folder.reset(::opendir("/proc"));
  }
  if (!folder) return nullptr;
  auto names = std::make_shared<Names>();
  if (last) names->reserve(last->size() + 1);
  NamedProcess process;
  errno = 0;
  while (const auto* entry = ::readdir(folder.get())) {
    const auto number = processNumber(entry->d_name);
    if (!number) continue;
    process.number = *number;
    const auto reading = readName(::dirfd(folder.get()), entry->d_name, process.name);
    if (reading == Reading::Failed) return nullptr;
    if (reading == Reading::Read) names->push_back(process);
    errno = 0;
  }
  if (errno != 0) return nullptr;
  return names;
}

std::optional<ProcessStart> startOfProcess(std::int32_t number) {
  // Behind the name come the state and the numbers; the start is the twentieth of all these.
  constexpr int startField = 20;
  const auto path = "/proc/" + std::to_string(number) + "/stat";
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::array<char, 2048> buffer{};
  const auto count = file ? ::read(file.get(), buffer.data(), buffer.size()) : 0;
  if (count <= 0) return std::nullopt;
  std::string_view text(buffer.data(), static_cast<std::size_t>(count));
  const auto open = text.find('(');
  const auto close = text.rfind(')');
  if (open == text.npos || close == text.npos) return std::nullopt;
  ProcessStart start{.name = std::string(text.substr(open + 1, close - open - 1)), .time = ""};
  text.remove_prefix(close + 1);
  for (int field = 0; field < startField; ++field) {
    const auto blank = text.find(' ');
    if (blank == text.npos) return std::nullopt;
    text.remove_prefix(blank + 1);
  }
  start.time = text.substr(0, text.find(' '));
  return start;
}

std::string describe(std::int32_t number, const ProcessStart& start) {
  return std::to_string(number) + ' ' + start.time + ' ' + start.name + '\n';
}

bool ProcessNames::areDifferent() const {
  return !program.empty() && !program.starts_with(shown);
}

std::optional<ProcessNames> ProcessNames::of(std::int32_t process) {
  const auto folder = std::filesystem::path("/proc") / std::to_string(process);
  ProcessNames names;
  std::ifstream file(folder / "comm");
  if (!std::getline(file, names.shown)) return std::nullopt;
  std::error_code error;
  names.program = std::filesystem::read_symlink(folder / "exe", error).filename();
  return names;
}

} // namespace velmor
