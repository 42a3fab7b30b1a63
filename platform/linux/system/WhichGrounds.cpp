#include "platform/linux/system/AnswerGrounds.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace velmor {

namespace {

bool isPlainName(std::string_view name) {
  return !name.empty() && !name.starts_with('-') && name.find('/') == name.npos;
}

/// A file that the shell would run; links are followed.
bool isProgram(const std::string& path) {
  struct stat file {};
  return ::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) &&
         ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

} // namespace

std::optional<AnswerGrounds> whichGrounds(const ChildProcess& child) {
  if (child.executable != "/usr/bin/which" || child.arguments.size() != 1) return std::nullopt;
  const auto& name = child.arguments[0];
  const char* const variable = std::getenv("PATH");
  if (!variable || !isPlainName(name)) return std::nullopt;

  std::string_view folders = variable;
  std::string found;
  while (found.empty()) {
    const auto end = std::min(folders.find(':'), folders.size());
    const auto folder = folders.substr(0, end);
    if (!folder.starts_with('/')) return std::nullopt;
    const auto path = std::string(folder) + '/' + name;
    if (isProgram(path)) found = path + '\n';
    if (end == folders.size()) break;
    folders.remove_prefix(end + 1);
  }
  return AnswerGrounds{.text = found, .lead = [found](const ChildResult& result) {
                         return result.output == found && result.errorOutput.empty() &&
                                result.exitStatus == (found.empty() ? 1 : 0);
                       }};
}

} // namespace velmor
