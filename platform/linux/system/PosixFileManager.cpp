#include "platform/linux/system/PosixFileManager.h"

#include "platform/linux/system/FileDescriptor.h"
#include "platform/linux/system/ReplacementFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace velmor {

namespace fs = std::filesystem;

namespace {

std::optional<std::chrono::system_clock::time_point> modificationTime(const fs::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  const auto sinceEpoch = std::chrono::seconds{status.st_mtim.tv_sec} +
                          std::chrono::nanoseconds{status.st_mtim.tv_nsec};
  return std::chrono::system_clock::time_point{sinceEpoch};
}

} // namespace

void PosixFileManager::createFolder(const fs::path& path, unsigned permissions) {
  std::error_code failure;
  if (fs::is_directory(path, failure)) return;
  if (path.has_parent_path() && path.parent_path() != path) {
    createFolder(path.parent_path(), permissions);
  }
  if (::mkdir(path.c_str(), permissions) == 0) return;
  const int error = errno;
  // Another process may have made it meanwhile.
  if (fs::is_directory(path, failure)) return;
  throw FileError("The folder \"" + path.string() +
                  "\" could not be created: " + systemMessage(error) + ".");
}

std::optional<std::string> PosixFileManager::read(const fs::path& path) const {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return std::nullopt;
  std::string bytes;
  std::array<char, 65536> chunk{};
  while (true) {
    const auto count = ::read(file.get(), chunk.data(), chunk.size());
    if (count == 0) return bytes;
    if (count > 0) bytes.append(chunk.data(), static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR) return std::nullopt;
  }
}

void PosixFileManager::writeAtomically(const fs::path& path, std::string_view bytes) {
  ReplacementFile::removeAbandoned(path);
  ReplacementFile replacement(path);
  replacement.write(bytes);
  replacement.replaceOriginal();
}

void PosixFileManager::setPermissions(const fs::path& path, unsigned permissions) {
  if (::chmod(path.c_str(), permissions) == 0) return;
  throw FileError("The permissions of \"" + path.string() +
                  "\" could not be changed: " + systemMessage(errno) + ".");
}

void PosixFileManager::remove(const fs::path& path) {
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

bool PosixFileManager::exists(const fs::path& path) const {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

bool PosixFileManager::isExecutable(const fs::path& path) const {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<std::uint64_t> PosixFileManager::size(const fs::path& path) const {
  std::error_code failure;
  const auto bytes = fs::file_size(path, failure);
  if (failure) return std::nullopt;
  return bytes;
}

std::vector<FolderEntry> PosixFileManager::list(const fs::path& folder) const {
  std::vector<FolderEntry> entries;
  std::error_code failure;
  fs::directory_iterator position(folder, failure);
  while (!failure && position != fs::directory_iterator()) {
    entries.push_back({position->path(), modificationTime(position->path())});
    position.increment(failure);
  }
  return entries;
}

} // namespace velmor
