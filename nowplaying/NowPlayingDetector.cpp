#include "nowplaying/NowPlayingDetector.h"

#include "nowplaying/DjayDetector.h"
#include "nowplaying/MediaRemoteClient.h"
#include "nowplaying/MixxxDetector.h"
#include "nowplaying/NowPlayingError.h"
#include "nowplaying/ProcessUtils.h"
#include "nowplaying/RekordboxDetector.h"
#include "nowplaying/SeratoDetector.h"
#include "nowplaying/StreamingAppDetector.h"
#include "nowplaying/VirtualDJDetector.h"

namespace velmor {

namespace {

constexpr auto spotify = StreamingAppDetector::spotify;
constexpr auto music = StreamingAppDetector::music;

/// The reader's track, or nothing: why it found none is nobody's concern, the next source is tried.
template <typename Reader>
std::optional<NowPlayingTrack> attempt(const Platform& platform, Reader reader) {
  try {
    return reader(platform);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

} // namespace

NowPlayingDetector::NowPlayingDetector(const Platform& system) : platform(system) {}

NowPlayingTrack NowPlayingDetector::current() {
  if (auto track = currentMixxx()) return *track;
  // While rekordbox runs, a DJ plays with it: what else sounds on the machine is not the set.
  if (RekordboxDetector::isRunning(platform)) return currentRekordbox();
  if (auto track = currentDjay()) return *track;
  if (auto track = currentPlayer(spotify)) return *track;
  if (auto track = currentPlayer(music)) return *track;
  if (auto track = MediaRemoteClient::currentTrackWorker(platform)) return *track;
  if (auto track = attempt(platform, VirtualDJDetector::current)) return *track;
  if (auto track = attempt(platform, SeratoDetector::current)) return *track;
  if (isPlayerPaused(spotify) || isPlayerPaused(music)) {
    throw NowPlayingError::playbackPaused("media player");
  }
  throw NowPlayingError::noActiveSession();
}

std::optional<NowPlayingTrack> NowPlayingDetector::currentMixxx() const {
  if (!MixxxDetector::isRunning(platform)) return std::nullopt;
  return attempt(platform, MixxxDetector::current);
}

std::optional<NowPlayingTrack> NowPlayingDetector::currentDjay() const {
  if (!DjayDetector::isRunning(platform)) return std::nullopt;
  return attempt(platform, DjayDetector::current);
}

std::optional<NowPlayingTrack> NowPlayingDetector::currentPlayer(const std::string& name) const {
  return StreamingAppDetector::current(platform, name, {name}, "macOS media",
                                       "macOS media session");
}

bool NowPlayingDetector::isPlayerPaused(const std::string& name) const {
  return ProcessUtils::isRunning(platform, {name}) &&
         StreamingAppDetector::isPaused(platform, name);
}

} // namespace velmor
