#include "platform/linux/system/AnswerGrounds.h"
#include "platform/linux/system/ProcessTable.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string_view>
#include <tuple>
#include <vector>

namespace velmor {

namespace {

namespace fs = std::filesystem;

/// Process, descriptor and the socket's number in the kernel.
using HeldSocket = std::tuple<std::int32_t, std::int32_t, std::string>;

/// The kernel's numbers of all sockets of a table such as /proc/net/tcp that listen. False when the
/// table cannot be read.
bool addListening(const char* table, std::set<std::string>& sockets) {
  constexpr std::size_t stateColumn = 3;
  constexpr std::size_t socketColumn = 9;
  constexpr std::string_view listening = "0A";
  std::ifstream file(table);
  std::string line;
  if (!std::getline(file, line)) return false;
  while (std::getline(file, line)) {
    std::istringstream words(line);
    std::array<std::string, socketColumn + 1> columns;
    for (auto& column : columns)
      words >> column;
    if (columns[stateColumn] == listening) sockets.insert(columns[socketColumn]);
  }
  return true;
}

template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
  Number number{};
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return number;
}

/// Adds those of the sockets that the process holds. False when its folder cannot be read.
bool addHeld(std::int32_t process, const std::set<std::string>& sockets,
             std::set<HeldSocket>& held) {
  constexpr std::string_view start = "socket:[";
  std::error_code error;
  fs::directory_iterator entry("/proc/" + std::to_string(process) + "/fd", error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code closedMeanwhile;
    const auto target = fs::read_symlink(entry->path(), closedMeanwhile).string();
    if (!target.starts_with(start)) continue;
    const auto socket = target.substr(start.size(), target.size() - start.size() - 1);
    const auto descriptor = numberIn<std::int32_t>(entry->path().filename().string());
    if (descriptor && sockets.contains(socket)) held.emplace(process, *descriptor, socket);
  }
  return !error;
}

/// The sockets in a table that lsof printed, as far as its lines have its columns.
std::set<HeldSocket> socketsIn(const std::string& output) {
  std::set<HeldSocket> sockets;
  std::istringstream lines(output);
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    std::istringstream words(line);
    std::string command;
    std::int32_t process = 0;
    std::string user;
    std::int32_t descriptor = 0;
    std::string access;
    std::string type;
    std::string socket;
    words >> command >> process >> user >> descriptor >> access >> type >> socket;
    sockets.emplace(process, descriptor, socket);
  }
  return sockets;
}

/// The process with its start, name and owner; nothing when it has ended.
std::optional<std::string> description(std::int32_t process) {
  struct stat folder {};
  const auto path = "/proc/" + std::to_string(process);
  const auto start = startOfProcess(process);
  if (!start || ::stat(path.c_str(), &folder) != 0) return std::nullopt;
  return std::to_string(folder.st_uid) + ' ' + describe(process, *start);
}

std::optional<AnswerGrounds> groundsFor(std::string_view processes) {
  std::set<std::string> listening;
  if (!addListening("/proc/net/tcp", listening)) return std::nullopt;
  // Without IPv6 there is no second table.
  addListening("/proc/net/tcp6", listening);
  std::string text;
  std::set<HeldSocket> held;
  for (std::size_t start = 0; start <= processes.size();) {
    const auto end = std::min(processes.find(',', start), processes.size());
    const auto process = numberIn<std::int32_t>(processes.substr(start, end - start));
    const auto described = process ? description(*process) : std::nullopt;
    if (!described || !addHeld(*process, listening, held)) return std::nullopt;
    text += *described;
    start = end + 1;
  }
  for (const auto& [process, descriptor, socket] : held)
    text += std::to_string(process) + ' ' + std::to_string(descriptor) + ' ' + socket + '\n';
  return AnswerGrounds{.text = std::move(text), .lead = [held](const ChildResult& result) {
                         return socketsIn(result.output) == held;
                       }};
}

} // namespace

std::optional<AnswerGrounds> lsofGrounds(const ChildProcess& child) {
  const std::vector<std::string> beginning = {"-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p"};
  const auto& arguments = child.arguments;
  if (child.executable != "/usr/bin/lsof" || arguments.size() != beginning.size() + 1 ||
      !std::equal(beginning.begin(), beginning.end(), arguments.begin())) {
    return std::nullopt;
  }
  return groundsFor(arguments.back());
}

} // namespace velmor
