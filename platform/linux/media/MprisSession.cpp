#include "platform/linux/media/MprisSession.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace velmor {

namespace {

int rank(const MprisPlayer& player) {
  using Status = MprisPlayer::Status;
  const auto isGiven = [](const auto& text) { return text && !text->empty(); };
  const bool saysWhat = isGiven(player.title) || isGiven(player.artist);
  if (player.status == Status::Playing) return saysWhat ? 3 : 2;
  return player.status == Status::Paused && saysWhat ? 1 : 0;
}

bool isBetter(const MprisPlayer& player, const MprisPlayer& other) {
  // The names change sides, since the first one is the better one.
  return std::make_tuple(rank(player), player.beganPlaying, std::string_view(other.busName)) >
         std::make_tuple(rank(other), other.beganPlaying, std::string_view(player.busName));
}

} // namespace

const MprisPlayer* chosenSession(const std::vector<MprisPlayer>& players) {
  const MprisPlayer* best = nullptr;
  for (const auto& player : players) {
    if (rank(player) > 0 && (!best || isBetter(player, *best))) best = &player;
  }
  return best;
}

namespace {

std::string lowercased(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

/// Programs that the rest of Velmor knows by another identifier than the desktop does.
std::optional<std::string> wellKnownIdentifier(std::string name) {
  constexpr std::array<std::string_view, 7> chromes = {
      "chrome",        "chromium",          "chromium-browser",     "com.google.chrome",
      "google-chrome", "chromium_chromium", "org.chromium.chromium"};
  constexpr std::array<std::string_view, 3> spotifies = {"spotify", "com.spotify.client",
                                                         "spotify_spotify"};
  name = lowercased(std::move(name));
  // Chrome's other release channels add their own names behind a dash.
  const bool isChrome =
      std::ranges::find(chromes, name) != chromes.end() || name.starts_with("google-chrome-");
  if (isChrome) return "com.google.Chrome";
  if (std::ranges::find(spotifies, name) != spotifies.end()) return "com.spotify.client";
  return std::nullopt;
}

/// "vlc" of "org.mpris.MediaPlayer2.vlc.instance1234".
std::string ownPart(const std::string& busName) {
  auto own = std::string_view(busName);
  own.remove_prefix(std::string_view(MprisPlayer::busNamePrefix).size());
  const auto lastDot = own.rfind('.');
  if (lastDot != std::string_view::npos && own.substr(lastDot).starts_with(".instance")) {
    own = own.substr(0, lastDot);
  }
  return std::string(own);
}

} // namespace

NowPlayingInfo nowPlayingInfo(const MprisPlayer& player) {
  NowPlayingInfo info;
  // Players keep the speed that they last had, so it counts only while one plays.
  const bool plays = player.status == MprisPlayer::Status::Playing;
  if (const auto rate = plays ? player.rate : 0.0) info.emplace(nowPlayingKey::playbackRate, *rate);
  const auto add = [&](const char* key, const std::optional<std::string>& text) {
    if (text) info.emplace(key, *text);
  };
  add(nowPlayingKey::title, player.title);
  add(nowPlayingKey::artist, player.artist);
  add(nowPlayingKey::albumArtist, player.albumArtist);
  add(nowPlayingKey::album, player.album);
  add(nowPlayingKey::bundleIdentifier, bundleIdentifier(player));
  return info;
}

std::string bundleIdentifier(const MprisPlayer& player) {
  const auto own = ownPart(player.busName);
  if (const auto known = wellKnownIdentifier(player.desktopEntry.value_or(""))) return *known;
  if (const auto known = wellKnownIdentifier(own)) return *known;
  const bool hasEntry = player.desktopEntry && !player.desktopEntry->empty();
  return hasEntry ? *player.desktopEntry : own;
}

bool goesByName(const MprisPlayer& player, std::string_view name) {
  if (name.empty()) return false;
  const auto wanted = lowercased(std::string(name));
  return lowercased(player.identity.value_or("")) == wanted ||
         lowercased(player.desktopEntry.value_or("")) == wanted ||
         lowercased(ownPart(player.busName)) == wanted;
}

MprisSession::MprisSession(std::shared_ptr<MprisBus> sessionBus) : bus(std::move(sessionBus)) {}

std::optional<bool> MprisSession::nowPlayingApplicationIsPlaying(Seconds timeout) {
  const auto* playing = player(timeout);
  if (!hasAnswer) return std::nullopt;
  return playing && playing->status == MprisPlayer::Status::Playing;
}

std::optional<NowPlayingInfo> MprisSession::nowPlayingInfo(Seconds timeout) {
  const auto* playing = player(timeout);
  if (!playing) return std::nullopt;
  return velmor::nowPlayingInfo(*playing);
}

std::optional<std::string> MprisSession::nowPlayingClient(Seconds timeout) {
  const auto* playing = player(timeout);
  if (!playing) return std::nullopt;
  return bundleIdentifier(*playing);
}

const MprisPlayer* MprisSession::player(Seconds timeout) {
  if (!hasRead) {
    hasRead = true;
    const auto players = bus->players(timeout);
    hasAnswer = players.has_value();
    const auto* chosen = players ? chosenSession(*players) : nullptr;
    if (chosen) current = *chosen;
  }
  return current ? &*current : nullptr;
}

} // namespace velmor
