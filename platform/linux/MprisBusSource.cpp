#include "platform/linux/MprisBusSource.h"

#include "platform/linux/SessionBusAddress.h"

namespace velmor {

MprisBusSource::MprisBusSource(const Environment& theEnvironment, std::stop_token quitToken)
    : environment(theEnvironment), quit(std::move(quitToken)) {}

std::shared_ptr<MprisBus> MprisBusSource::current() {
  const auto address = sessionBusAddress(environment);
  if (!address) return nullptr;
  const std::lock_guard guard(lock);
  if (!bus || bus->address() != *address) bus = std::make_shared<MprisBus>(*address, quit);
  return bus;
}

} // namespace velmor
