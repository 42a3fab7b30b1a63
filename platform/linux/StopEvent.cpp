#include "platform/linux/StopEvent.h"

#include <sys/eventfd.h>

namespace velmor {

StopEvent::StopEvent(std::stop_token token)
    : event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , callback(std::move(token), [this] { ::eventfd_write(event.get(), 1); }) {}

} // namespace velmor
