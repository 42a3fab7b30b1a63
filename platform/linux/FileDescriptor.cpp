#include "platform/linux/FileDescriptor.h"

#include <unistd.h>

namespace velmor {

void FileDescriptor::close() noexcept {
  if (number >= 0) ::close(std::exchange(number, -1));
}

} // namespace velmor
