#include "nowplaying/readers/MediaRemoteClient.h"

#include "base/Text.h"
#include "platform/MediaRemote.h"

namespace velmor {

namespace {

constexpr Seconds queryTimeout{2.0};

std::string textValue(const NowPlayingInfo& info, const char* key) {
  const auto found = info.find(key);
  if (found == info.end()) return {};
  const auto* const value = std::get_if<std::string>(&found->second);
  return value ? std::string(text::bounded(text::trimmed(*value))) : std::string();
}

bool hasPlayingRate(const NowPlayingInfo& info) {
  const auto found = info.find(nowPlayingKey::playbackRate);
  if (found == info.end()) return false;
  const auto* const rate = std::get_if<double>(&found->second);
  return rate && *rate > 0;
}

std::string artistOf(const NowPlayingInfo& info) {
  auto artist = textValue(info, nowPlayingKey::artist);
  return artist.empty() ? textValue(info, nowPlayingKey::albumArtist) : artist;
}

std::string publisherOf(const NowPlayingInfo& info, MediaRemoteSession& session) {
  auto identifier = textValue(info, nowPlayingKey::bundleIdentifier);
  if (!identifier.empty()) return identifier;
  const auto client = session.nowPlayingClient(queryTimeout);
  return client ? std::string(text::trimmed(*client)) : std::string();
}

} // namespace

std::optional<NowPlayingTrack> MediaRemoteClient::currentTrackWorker(const Platform& platform) {
  const auto session = platform.mediaRemote.open();
  if (!session) return std::nullopt;
  const bool flag = session->nowPlayingApplicationIsPlaying(queryTimeout).value_or(false);
  const auto info = session->nowPlayingInfo(queryTimeout);
  if (!info) return std::nullopt;
  // Players disagree about which of the two they keep up to date; either is enough.
  if (!flag && !hasPlayingRate(*info)) return std::nullopt;

  NowPlayingTrack track;
  track.title = textValue(*info, nowPlayingKey::title);
  track.artist = artistOf(*info);
  track.album = textValue(*info, nowPlayingKey::album);
  if (track.title.empty() || track.artist.empty()) return std::nullopt;
  track.source = mediaSourceName(publisherOf(*info, *session));
  track.detection = "macOS media session";
  return track;
}

std::string MediaRemoteClient::mediaSourceName(const std::string& bundleIdentifier) {
  if (bundleIdentifier.empty() || bundleIdentifier == "com.spotify.client" ||
      bundleIdentifier == "com.apple.Music") {
    return "macOS media";
  }
  if (bundleIdentifier == "com.google.Chrome" || bundleIdentifier == "com.google.Chrome.helper") {
    return "Chrome";
  }
  if (bundleIdentifier == "com.apple.Safari") return "Safari";
  return bundleIdentifier;
}

} // namespace velmor
