#include "platform/linux/MprisMediaRemote.h"

#include "platform/linux/MprisSession.h"
#include "platform/linux/SessionBusAddress.h"

namespace velmor {

MprisMediaRemote::MprisMediaRemote(const Environment& theEnvironment, std::stop_token quitToken)
    : environment(theEnvironment), quit(std::move(quitToken)) {}

std::unique_ptr<MediaRemoteSession> MprisMediaRemote::open() {
  const auto address = sessionBusAddress(environment);
  if (!address) return nullptr;
  const std::lock_guard guard(lock);
  if (!bus || bus->address() != *address) bus = std::make_shared<MprisBus>(*address, quit);
  return std::make_unique<MprisSession>(bus);
}

} // namespace velmor
