#include "platform/linux/system/FileDescriptor.h"

#include <unistd.h>

#include <cstring>

namespace velmor {

void FileDescriptor::close() noexcept {
  if (number >= 0) ::close(std::exchange(number, -1));
}

std::string systemMessage(int error) {
  const char* description = ::strerrordesc_np(error);
  return description ? description : "Unknown error " + std::to_string(error);
}

} // namespace velmor
