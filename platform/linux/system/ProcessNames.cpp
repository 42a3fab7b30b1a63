#include "platform/linux/system/ProcessNames.h"

#include <filesystem>
#include <fstream>

namespace velmor {

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
