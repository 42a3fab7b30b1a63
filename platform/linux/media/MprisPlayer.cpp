#include "platform/linux/media/MprisPlayer.h"

#include "base/Text.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace velmor {

namespace {

std::optional<std::string> textAt(const VariantPtr& properties, const char* key) {
  const auto value = valueOf<std::string>(entryOf(properties, key));
  return value ? std::optional(std::string(text::bounded(*value))) : std::nullopt;
}

std::optional<double> number(const VariantPtr& properties, const char* key) {
  const auto value = valueOf<double>(entryOf(properties, key));
  return value && std::isfinite(*value) ? value : std::nullopt;
}

/// A list of texts, or the plain text that some players send in its place.
std::optional<std::string> joinedTexts(const VariantPtr& properties, const char* key) {
  const auto texts = valueOf<std::vector<std::string>>(entryOf(properties, key));
  if (!texts) return textAt(properties, key);
  std::string joined;
  for (const auto& each : *texts) {
    if (each.empty()) continue;
    if (!joined.empty()) joined += ", ";
    joined += text::bounded(each);
    if (joined.size() > text::mostCharacters) break;
  }
  return std::string(text::bounded(joined));
}

MprisPlayer::Status statusNamed(const std::string& name) {
  if (name == "Playing") return MprisPlayer::Status::Playing;
  if (name == "Paused") return MprisPlayer::Status::Paused;
  return MprisPlayer::Status::Stopped;
}

} // namespace

bool isPlayerName(const std::string& busName) {
  constexpr std::string_view mirror = "org.mpris.MediaPlayer2.playerctld";
  return busName.starts_with(MprisPlayer::busNamePrefix) && busName != mirror;
}

MprisPlayer playerFromProperties(const std::string& busName, const VariantPtr& player,
                                 const VariantPtr& identity) {
  const auto metadata = entryOf(player, "Metadata");
  return {.busName = busName,
          .process = 0,
          .identity = textAt(identity, "Identity"),
          .desktopEntry = textAt(identity, "DesktopEntry"),
          .status = statusNamed(textAt(player, "PlaybackStatus").value_or("")),
          .rate = number(player, "Rate"),
          .title = textAt(metadata, "xesam:title"),
          .artist = joinedTexts(metadata, "xesam:artist"),
          .albumArtist = joinedTexts(metadata, "xesam:albumArtist"),
          .album = textAt(metadata, "xesam:album"),
          .beganPlaying = 0};
}

std::optional<bool> isPlaying(const VariantPtr& properties) {
  const auto status = textAt(properties, "PlaybackStatus");
  if (!status) return std::nullopt;
  return statusNamed(*status) == MprisPlayer::Status::Playing;
}

namespace {

/// Programs that the rest of Velmor knows by another identifier than the desktop does.
std::optional<std::string> wellKnownIdentifier(const std::string& name) {
  constexpr std::array<std::string_view, 7> chromes = {
      "chrome",        "chromium",          "chromium-browser",     "com.google.chrome",
      "google-chrome", "chromium_chromium", "org.chromium.chromium"};
  constexpr std::array<std::string_view, 3> spotifies = {"spotify", "com.spotify.client",
                                                         "spotify_spotify"};
  const auto lower = takeText(g_ascii_strdown(name.c_str(), -1));
  // Chrome's other release channels add their own names behind a dash.
  const bool isChrome =
      std::ranges::find(chromes, lower) != chromes.end() || lower.starts_with("google-chrome-");
  if (isChrome) return "com.google.Chrome";
  if (std::ranges::find(spotifies, lower) != spotifies.end()) return "com.spotify.client";
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

bool equalInAnyCase(const std::string& left, const std::string& right) {
  return g_ascii_strcasecmp(left.c_str(), right.c_str()) == 0;
}

} // namespace

std::string bundleIdentifier(const MprisPlayer& player) {
  const auto own = ownPart(player.busName);
  const auto entry = player.desktopEntry.value_or("");
  if (const auto known = wellKnownIdentifier(entry)) return *known;
  if (const auto known = wellKnownIdentifier(own)) return *known;
  return entry.empty() ? own : entry;
}

bool goesByName(const MprisPlayer& player, const std::string& name) {
  if (name.empty()) return false;
  return equalInAnyCase(player.identity.value_or(""), name) ||
         equalInAnyCase(player.desktopEntry.value_or(""), name) ||
         equalInAnyCase(ownPart(player.busName), name);
}

} // namespace velmor
