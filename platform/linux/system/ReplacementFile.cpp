#include "platform/linux/system/ReplacementFile.h"

#include "platform/FileManager.h"
#include "platform/linux/system/FileDescriptor.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>

namespace velmor {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view ending = ".velmor-new";

/// The beginning of the names of all files that are to replace this one; the writer's process
/// number follows, so that files of writers that crashed can be told.
std::string namePrefix(const fs::path& target) {
  return "." + target.filename().string() + ".";
}

std::string freshName(const fs::path& target) {
  std::uint32_t random = 0;
  if (::getrandom(&random, sizeof random, 0) != sizeof random) random = 0;
  return namePrefix(target) + std::to_string(::getpid()) + "-" + std::to_string(random) +
         std::string(ending);
}

bool isAbandoned(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix) || !name.ends_with(ending)) return false;
  name.remove_prefix(prefix.size());
  pid_t writer = 0;
  const auto parsed = std::from_chars(name.data(), name.data() + name.size(), writer);
  if (parsed.ec != std::errc() || writer <= 0 || *parsed.ptr != '-') return false;
  return ::kill(writer, 0) != 0 && errno == ESRCH;
}

/// Where the file itself lies: a link in its place, such as one into a folder of dotfiles, stays.
fs::path resolved(const fs::path& path) {
  std::error_code failure;
  const auto real = fs::canonical(path, failure);
  return failure ? path : real;
}

fs::path folderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

} // namespace

ReplacementFile::ReplacementFile(const fs::path& original) : target(resolved(original)) {
  constexpr mode_t ownerOnly = 0600;
  do {
    path = folderOf(target) / freshName(target);
    file = FileDescriptor(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, ownerOnly));
  } while (!file && errno == EEXIST);
  if (!file) {
    const int error = errno;
    path.clear();
    fail(error);
  }
}

ReplacementFile::~ReplacementFile() {
  if (!path.empty()) ::unlink(path.c_str());
}

void ReplacementFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(file.get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail(errno);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void ReplacementFile::replaceOriginal() {
  if (::fsync(file.get()) != 0) fail(errno);
  if (::rename(path.c_str(), target.c_str()) != 0) fail(errno);
  path.clear();
  // The file is in its place. Should the folder not reach the disk, a loss of power brings the
  // old file back whole: nothing that could be undone or that the user could mend.
  const FileDescriptor folder(::open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) ::fsync(folder.get());
}

void ReplacementFile::removeAbandoned(const fs::path& original) {
  const auto target = resolved(original);
  const auto prefix = namePrefix(target);
  std::error_code failure;
  fs::directory_iterator position(folderOf(target), failure);
  while (!failure && position != fs::directory_iterator()) {
    if (isAbandoned(position->path().filename().native(), prefix)) {
      ::unlink(position->path().c_str());
    }
    position.increment(failure);
  }
}

void ReplacementFile::fail(int error) const {
  throw FileError("The file \"" + target.string() +
                  "\" could not be written: " + systemMessage(error) + ".");
}

} // namespace velmor
