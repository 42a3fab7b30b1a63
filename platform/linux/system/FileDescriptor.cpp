#include "platform/linux/system/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace velmor {

namespace {

bool isRegular(const struct stat& file) {
  return S_ISREG(file.st_mode);
}

FileDescriptor openRegularFile(const std::filesystem::path& path) {
  struct stat found {};
  if (::stat(path.c_str(), &found) != 0 || !isRegular(found)) return {};
  // Something else may have taken its place meanwhile: opening that must not wait either.
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || ::fstat(file.get(), &found) != 0 || !isRegular(found)) return {};
  return file;
}

} // namespace

std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t limit) {
  const auto file = openRegularFile(path);
  if (!file) return std::nullopt;
  std::string bytes;
  std::array<char, 65536> chunk{};
  while (true) {
    const auto count = ::read(file.get(), chunk.data(), chunk.size());
    if (count == 0) return bytes;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    const auto length = static_cast<std::size_t>(count);
    if (length > limit - bytes.size()) return std::nullopt;
    bytes.append(chunk.data(), length);
  }
}

} // namespace velmor
