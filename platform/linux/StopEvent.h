#pragma once

#include "platform/linux/FileDescriptor.h"

#include <functional>
#include <stop_token>

namespace velmor {

/// A descriptor that becomes readable once stop is requested, to be waited for among others.
class StopEvent {
public:
  explicit StopEvent(std::stop_token token);

  [[nodiscard]] int descriptor() const { return event.get(); }

private:
  FileDescriptor event;
  std::stop_callback<std::function<void()>> callback;
};

} // namespace velmor
