#include "platform/linux/system/PosixEnvironment.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace velmor {

namespace {

constexpr std::array secretNames = {"OPENAI_API_KEY", "TINKER_API_KEY",
                                    "VIRTUALDJ_NETWORK_CONTROL_TOKEN"};

std::filesystem::path homeOfUser() {
  constexpr std::size_t enough = 16384;
  std::vector<char> buffer(enough);
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found ? found->pw_dir : "/";
}

} // namespace

PosixEnvironment::PosixEnvironment() {
  for (const char* name : secretNames) {
    char* value = std::getenv(name);
    if (!value) continue;
    secrets.emplace(name, value);
    // The memory of the first environment stays readable in /proc after the variable is gone.
    ::explicit_bzero(value, std::strlen(value));
    ::unsetenv(name);
  }
}

std::optional<std::string> PosixEnvironment::variable(std::string_view name) const {
  const std::lock_guard guard(lock);
  if (const auto secret = secrets.find(name); secret != secrets.end()) return secret->second;
  const char* value = std::getenv(std::string(name).c_str());
  if (!value) return std::nullopt;
  return value;
}

std::filesystem::path PosixEnvironment::homeDirectory() const {
  const std::filesystem::path home = variable("HOME").value_or("");
  return home.is_absolute() ? home : homeOfUser();
}

std::filesystem::path PosixEnvironment::applicationSupportDirectory() const {
  const std::filesystem::path folder = variable("XDG_CONFIG_HOME").value_or("");
  return folder.is_absolute() ? folder : homeDirectory() / ".config";
}

std::filesystem::path PosixEnvironment::temporaryDirectory() const {
  const std::filesystem::path folder = variable("TMPDIR").value_or("");
  return folder.is_absolute() ? folder : "/tmp";
}

} // namespace velmor
