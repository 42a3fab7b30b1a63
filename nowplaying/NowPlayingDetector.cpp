#include "nowplaying/NowPlayingDetector.h"

#include "nowplaying/ApplicationsSnapshot.h"
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

std::optional<NowPlayingTrack> currentMixxx(const Platform& platform) {
  if (!MixxxDetector::isRunning(platform)) return std::nullopt;
  return attempt(platform, MixxxDetector::current);
}

std::optional<NowPlayingTrack> currentDjay(const Platform& platform) {
  if (!DjayDetector::isRunning(platform)) return std::nullopt;
  return attempt(platform, DjayDetector::current);
}

std::optional<NowPlayingTrack> currentPlayer(const Platform& platform, const std::string& name) {
  return StreamingAppDetector::current(platform, name, {name}, "macOS media",
                                       "macOS media session");
}

bool isPlayerPaused(const Platform& platform, const std::string& name) {
  return ProcessUtils::isRunning(platform, {name}) &&
         StreamingAppDetector::isPaused(platform, name);
}

} // namespace

NowPlayingDetector::NowPlayingDetector(const Platform& system) : platform(system) {}

NowPlayingTrack NowPlayingDetector::current() {
  ApplicationsSnapshot applications(platform.applications);
  const auto now = platform.with(applications);
  if (auto track = currentMixxx(now)) return *track;
  // While rekordbox runs, a DJ plays with it: what else sounds on the machine is not the set.
  if (RekordboxDetector::isRunning(now)) return currentRekordbox();
  if (auto track = currentDjay(now)) return *track;
  if (auto track = currentPlayer(now, spotify)) return *track;
  if (auto track = currentPlayer(now, music)) return *track;
  if (auto track = MediaRemoteClient::currentTrackWorker(now)) return *track;
  if (auto track = attempt(now, VirtualDJDetector::current)) return *track;
  if (auto track = attempt(now, SeratoDetector::current)) return *track;
  if (isPlayerPaused(now, spotify) || isPlayerPaused(now, music)) {
    throw NowPlayingError::playbackPaused("media player");
  }
  throw NowPlayingError::noActiveSession();
}

} // namespace velmor
