#include "platform/linux/system/FileDescriptor.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstring>

namespace velmor {

void FileDescriptor::close() noexcept {
  if (number >= 0) ::close(std::exchange(number, -1));
}

StopEvent::StopEvent(std::stop_token token)
    : event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , callback(std::move(token), [this] { ::eventfd_write(event.get(), 1); }) {}

std::string systemMessage(int error) {
  const char* description = ::strerrordesc_np(error);
  return description ? description : "Unknown error " + std::to_string(error);
}

} // namespace velmor
