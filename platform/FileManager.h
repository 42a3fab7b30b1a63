#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// A file operation failed; the message is a sentence for the user.
class FileError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A file or folder in a folder's listing.
struct FolderEntry {
  /// The folder's path and the name.
  std::filesystem::path path;
  /// Nothing when the date cannot be read.
  std::optional<std::chrono::system_clock::time_point> modified;
};

/// A folder that belongs to one run of Velmor; see FileManager::hold.
class FolderHold {
public:
  FolderHold() = default;
  FolderHold(const FolderHold&) = delete;
  FolderHold& operator=(const FolderHold&) = delete;
  virtual ~FolderHold() = default;
};

/// Files and folders. Safe to use from any thread. Permissions are POSIX modes such as 0600. Links
/// are followed, except by `remove` and `move`. Reading tells of failures by an empty answer, since
/// a file may go at any moment; writing throws.
class FileManager {
public:
  /// In bytes.
  static constexpr std::size_t readLimit = std::size_t{64} << 20;

  virtual ~FileManager() = default;

  /// Creates the folder and any above it with these permissions; an existing folder is fine.
  /// Throws FileError.
  virtual void createFolder(const std::filesystem::path& path, unsigned permissions) = 0;

  /// The whole file; nothing when it cannot be read, is longer than `readLimit` or still grows
  /// beyond that, or is no regular file but a pipe, a device or a folder, which is never waited
  /// for.
  [[nodiscard]] virtual std::optional<std::string>
  read(const std::filesystem::path& path) const = 0;

  /// Writes a new file that only this user may read, and puts it in the place of `path` once it is
  /// safely stored: the old or the new file is there whole at any moment. A link to a file of this
  /// user stays, and its file is replaced. Throws FileError, also for a link that leads nowhere or
  /// to another user's file; the old file stays then.
  virtual void writeAtomically(const std::filesystem::path& path, std::string_view bytes) = 0;

  /// Throws FileError, also when there is no such file.
  virtual void setPermissions(const std::filesystem::path& path, unsigned permissions) = 0;

  /// Moves a file or folder to another name in the same folder, in the place of a file that is
  /// there. A link is moved, not what it leads to. Throws FileError.
  virtual void move(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

  /// Removes a file, or a folder with everything in it. Failures are ignored.
  virtual void remove(const std::filesystem::path& path) = 0;

  /// Takes a folder of this user for as long as the answer lives. Null when another run of Velmor
  /// has it, or when there is no such folder. The end of the program, however it comes, gives it
  /// free.
  [[nodiscard]] virtual std::unique_ptr<FolderHold> hold(const std::filesystem::path& folder) = 0;

  [[nodiscard]] virtual bool exists(const std::filesystem::path& path) const = 0;

  /// True for a file (not a folder) that this user may execute.
  [[nodiscard]] virtual bool isExecutable(const std::filesystem::path& path) const = 0;

  /// The size in bytes; nothing when it cannot be read.
  [[nodiscard]] virtual std::optional<std::uint64_t>
  size(const std::filesystem::path& path) const = 0;

  /// The files and folders right in the folder, in no particular order; none when it cannot be
  /// listed.
  [[nodiscard]] virtual std::vector<FolderEntry>
  list(const std::filesystem::path& folder) const = 0;
};

} // namespace velmor
