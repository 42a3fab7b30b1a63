#include "platform/linux/media/MprisMediaRemote.h"

#include "platform/linux/media/MprisBus.h"
#include "platform/linux/media/MprisSession.h"

namespace velmor {

MprisMediaRemote::MprisMediaRemote(MprisBusSource& mprisBuses) : buses(mprisBuses) {}

std::unique_ptr<MediaRemoteSession> MprisMediaRemote::open() {
  auto bus = buses.current();
  return bus ? std::make_unique<MprisSession>(std::move(bus)) : nullptr;
}

} // namespace velmor
