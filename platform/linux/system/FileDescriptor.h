#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace velmor {

/// An open file descriptor, closed when destroyed.
class FileDescriptor {
public:
  FileDescriptor() = default;
  /// Takes over what a system call has returned; a negative number is no descriptor.
  explicit FileDescriptor(int opened) : number(opened) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      close();
      number = std::exchange(other.number, -1);
    }
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { close(); }

  /// -1 when there is none.
  [[nodiscard]] int get() const { return number; }
  explicit operator bool() const { return number >= 0; }

  void close() noexcept {
    if (number >= 0) ::close(std::exchange(number, -1));
  }

private:
  int number = -1;
};

/// The system's words for an error number (errno), such as "No such file or directory"; in English
/// whatever the locale.
[[nodiscard]] inline std::string systemMessage(int error) {
  const char* description = ::strerrordesc_np(error);
  return description ? description : "Unknown error " + std::to_string(error);
}

/// The whole file. Nothing when it cannot be read, is longer than `limit` bytes, also because it
/// grows while it is read, or is no regular file: a pipe or a device in its place is not opened,
/// since that alone may wait for ever. Links are followed. Any thread.
[[nodiscard]] std::optional<std::string> readRegularFile(const std::filesystem::path& path,
                                                         std::size_t limit);

} // namespace velmor
