#pragma once

#include <utility>

namespace velmor {

/// An open file descriptor, closed when destroyed.
class FileDescriptor {
public:
  FileDescriptor() = default;
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

  [[nodiscard]] int get() const { return number; }
  explicit operator bool() const { return number >= 0; }

  void close() noexcept;

private:
  int number = -1;
};

} // namespace velmor
