#pragma once

#include "platform/MediaRemote.h"
#include "platform/linux/media/MprisPlayer.h"

#include <memory>
#include <vector>

namespace velmor {

class MprisBusSource;

/// The player whose session is the system's. One that plays counts before one that is paused, and
/// then one that tells title and artist before one that tells one of them, and that before one that
/// tells nothing: a film in a browser has no artist and must not hide the record. Among equals it
/// is the one that began to play last, then the first by bus name. Null when nothing plays, and
/// nothing that is paused says with what.
[[nodiscard]] const MprisPlayer* chosenSession(const std::vector<MprisPlayer>& players);

/// What the player says, under the system's keys.
[[nodiscard]] NowPlayingInfo nowPlayingInfo(const MprisPlayer& player);

/// The now-playing session of a Linux desktop: that of a media player on the session bus. The
/// players are asked once for each session that is opened, by its first query.
class MprisMediaRemote final : public MediaRemote {
public:
  explicit MprisMediaRemote(MprisBusSource& mprisBuses);

  /// Null when there is no session bus.
  [[nodiscard]] std::unique_ptr<MediaRemoteSession> open() override;

private:
  MprisBusSource& buses;
};

} // namespace velmor
