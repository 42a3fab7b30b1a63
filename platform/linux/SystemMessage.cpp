#include "platform/linux/SystemMessage.h"

#include <cstring>

namespace velmor {

std::string systemMessage(int error) {
  const char* description = ::strerrordesc_np(error);
  return description ? description : "Unknown error " + std::to_string(error);
}

} // namespace velmor
