#include "platform/linux/system/PosixEnvironment.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <fstream>
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

std::filesystem::path PosixEnvironment::cacheDirectory() const {
  const std::filesystem::path folder = variable("XDG_CACHE_HOME").value_or("");
  return folder.is_absolute() ? folder : homeDirectory() / ".cache";
}

std::optional<std::filesystem::path> PosixEnvironment::musicDirectory() const {
  constexpr std::string_view start = "XDG_MUSIC_DIR=\"";
  constexpr std::string_view inHome = "$HOME";
  const auto home = homeDirectory();
  auto folder = home / "Music";
  std::ifstream file(applicationSupportDirectory() / "user-dirs.dirs");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(start) || !line.ends_with('"')) continue;
    auto value = line.substr(start.size(), line.size() - start.size() - 1);
    if (value.starts_with(inHome)) value = home.string() + value.substr(inHome.size());
    folder = value;
  }
  // The home folder itself stands for none.
  const bool isHome = (folder / "").lexically_normal() == (home / "").lexically_normal();
  return folder.is_absolute() && !isHome ? std::optional(folder) : std::nullopt;
}

std::filesystem::path PosixEnvironment::temporaryDirectory() const {
  const std::filesystem::path folder = variable("TMPDIR").value_or("");
  return folder.is_absolute() ? folder : "/tmp";
}

} // namespace velmor
