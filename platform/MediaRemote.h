#pragma once

#include "platform/MainLoop.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace velmor {

using NowPlayingValue = std::variant<std::string, double>;

/// What a media session publishes, under the system's own keys. A member that the session lacks,
/// or gives in another type, is not there.
using NowPlayingInfo = std::map<std::string, NowPlayingValue>;

namespace nowPlayingKey {
inline constexpr auto playbackRate = "kMRMediaRemoteNowPlayingInfoPlaybackRate";
inline constexpr auto title = "kMRMediaRemoteNowPlayingInfoTitle";
inline constexpr auto artist = "kMRMediaRemoteNowPlayingInfoArtist";
inline constexpr auto albumArtist = "kMRMediaRemoteNowPlayingInfoAlbumArtist";
inline constexpr auto album = "kMRMediaRemoteNowPlayingInfoAlbum";
inline constexpr auto bundleIdentifier = "kMRMediaRemoteNowPlayingApplicationBundleIdentifier";
} // namespace nowPlayingKey

/// The opened now-playing interface; closed when destroyed. Each query waits for at most `timeout`
/// and gives nothing when no answer came by then. Must not be asked on a thread whose event loop
/// has to run for the answer to come.
class MediaRemoteSession {
public:
  virtual ~MediaRemoteSession() = default;

  [[nodiscard]] virtual std::optional<bool> nowPlayingApplicationIsPlaying(Seconds timeout) = 0;
  [[nodiscard]] virtual std::optional<NowPlayingInfo> nowPlayingInfo(Seconds timeout) = 0;
  /// The bundle identifier of the client that plays.
  [[nodiscard]] virtual std::optional<std::string> nowPlayingClient(Seconds timeout) = 0;
};

/// The operating system's now-playing session.
class MediaRemote {
public:
  virtual ~MediaRemote() = default;

  /// Opens the interface; null when this system does not have it. Any thread.
  [[nodiscard]] virtual std::unique_ptr<MediaRemoteSession> open() = 0;
};

} // namespace velmor
