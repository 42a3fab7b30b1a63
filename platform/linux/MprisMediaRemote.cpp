#include "platform/linux/MprisMediaRemote.h"

#include "platform/linux/MprisBusSource.h"
#include "platform/linux/MprisSession.h"

namespace velmor {

MprisMediaRemote::MprisMediaRemote(MprisBusSource& mprisBuses) : buses(mprisBuses) {}

std::unique_ptr<MediaRemoteSession> MprisMediaRemote::open() {
  auto bus = buses.current();
  return bus ? std::make_unique<MprisSession>(std::move(bus)) : nullptr;
}

} // namespace velmor
