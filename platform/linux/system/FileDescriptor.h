#pragma once

#include <functional>
#include <stop_token>
#include <string>
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

/// A descriptor that becomes readable once stop is requested, to be waited for among others.
class StopEvent {
public:
  explicit StopEvent(std::stop_token token);

  [[nodiscard]] int descriptor() const { return event.get(); }

private:
  FileDescriptor event;
  std::stop_callback<std::function<void()>> callback;
};

/// The system's words for an error number, such as "No such file or directory".
[[nodiscard]] std::string systemMessage(int error);

} // namespace velmor
