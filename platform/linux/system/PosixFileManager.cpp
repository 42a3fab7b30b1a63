#include "platform/linux/system/PosixFileManager.h"

#include "platform/linux/system/FileDescriptor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

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

/// A link that leads nowhere, or to a file of somebody else, is not what the user meant to have
/// written through. Throws FileError.
void refuseStrangeLink(const fs::path& path) {
  struct stat link {};
  struct stat file {};
  if (::lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return;
  const auto refuse = [&](const std::string& why) {
    throw FileError("The file \"" + path.string() + "\" is a link " + why +
                    ". Remove the link, or let it lead to a file of yours.");
  };
  if (::stat(path.c_str(), &file) != 0) refuse("that leads nowhere");
  const auto user = ::geteuid();
  if (link.st_uid != user || file.st_uid != user) refuse("that involves another user");
}

fs::path folderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

/// A private file beside another one, made to take its place. Until it has, destroying it removes
/// it again. Every operation throws FileError. The libraries' ways of doing this leave a file
/// behind when the writer is killed, which nobody could tell from that of a writer at work.
class ReplacementFile {
public:
  /// Creates the file, empty, in the folder of `original`.
  explicit ReplacementFile(const fs::path& original);
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  ~ReplacementFile();

  void write(std::string_view bytes);

  /// Stores what was written safely, then puts the file in the original's place.
  void replaceOriginal();

  /// Removes what writers of `original` that no longer run have left behind. Never throws.
  static void removeAbandoned(const fs::path& original);

private:
  [[noreturn]] void fail(int error) const;

  fs::path target;
  fs::path path;
  FileDescriptor file;
};

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

/// The system gives a lock free with the descriptor that it was taken with.
class LockedFolder final : public FolderHold {
public:
  explicit LockedFolder(FileDescriptor locked) : folder(std::move(locked)) {}

private:
  FileDescriptor folder;
};

std::optional<std::chrono::system_clock::time_point> modificationTime(const fs::path& path) {
  std::error_code failure;
  const auto time = fs::last_write_time(path, failure);
  if (failure) return std::nullopt;
  return std::chrono::file_clock::to_sys(time);
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
  return readRegularFile(path, readLimit);
}

void PosixFileManager::writeAtomically(const fs::path& path, std::string_view bytes) {
  refuseStrangeLink(path);
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

void PosixFileManager::move(const fs::path& from, const fs::path& to) {
  if (::rename(from.c_str(), to.c_str()) == 0) return;
  throw FileError("The file \"" + from.string() + "\" could not be moved: " + systemMessage(errno) +
                  ".");
}

void PosixFileManager::remove(const fs::path& path) {
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

std::unique_ptr<FolderHold> PosixFileManager::hold(const fs::path& folder) {
  FileDescriptor opened(
      ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!opened || ::flock(opened.get(), LOCK_EX | LOCK_NB) != 0) return nullptr;
  // Whoever had it until now may have removed it.
  struct stat state {};
  if (::fstat(opened.get(), &state) != 0 || state.st_nlink == 0) return nullptr;
  if (state.st_uid != ::geteuid()) return nullptr;
  return std::make_unique<LockedFolder>(std::move(opened));
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
