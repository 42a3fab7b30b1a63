#include "platform/linux/media/MprisPlayer.h"

#include "platform/linux/glib/Variants.h"

#include <glib.h>

#include <cmath>

namespace velmor {

namespace {

VariantPtr member(GVariant* dictionary, const char* name, const GVariantType* type) {
  if (!dictionary) return nullptr;
  return VariantPtr(g_variant_lookup_value(dictionary, name, type));
}

std::optional<std::string> text(GVariant* dictionary, const char* name) {
  const auto value = member(dictionary, name, G_VARIANT_TYPE_STRING);
  if (!value) return std::nullopt;
  return g_variant_get_string(value.get(), nullptr);
}

std::optional<double> number(GVariant* dictionary, const char* name) {
  const auto value = member(dictionary, name, G_VARIANT_TYPE_DOUBLE);
  if (!value) return std::nullopt;
  const double result = g_variant_get_double(value.get());
  if (!std::isfinite(result)) return std::nullopt;
  return result;
}

std::optional<std::string> joinedTexts(GVariant* dictionary, const char* name) {
  const auto value = member(dictionary, name, G_VARIANT_TYPE_STRING_ARRAY);
  if (!value) return std::nullopt;
  std::string joined;
  for (gsize index = 0; index < g_variant_n_children(value.get()); ++index) {
    const VariantPtr entry(g_variant_get_child_value(value.get(), index));
    const std::string artist = g_variant_get_string(entry.get(), nullptr);
    if (artist.empty()) continue;
    if (!joined.empty()) joined += ", ";
    joined += artist;
  }
  return joined;
}

MprisPlayer::Status statusNamed(const std::string& name) {
  if (name == "Playing") return MprisPlayer::Status::Playing;
  if (name == "Paused") return MprisPlayer::Status::Paused;
  return MprisPlayer::Status::Stopped;
}

} // namespace

MprisPlayer playerFromProperties(const std::string& busName, GVariant& player, GVariant* identity) {
  const auto metadata = member(&player, "Metadata", G_VARIANT_TYPE_VARDICT);
  return {.busName = busName,
          .process = 0,
          .identity = text(identity, "Identity"),
          .desktopEntry = text(identity, "DesktopEntry"),
          .status = statusNamed(text(&player, "PlaybackStatus").value_or("")),
          .rate = number(&player, "Rate"),
          .title = text(metadata.get(), "xesam:title"),
          .artist = joinedTexts(metadata.get(), "xesam:artist"),
          .albumArtist = joinedTexts(metadata.get(), "xesam:albumArtist"),
          .album = text(metadata.get(), "xesam:album"),
          .beganPlaying = 0};
}

std::optional<bool> isPlaying(GVariant& properties) {
  const auto status = text(&properties, "PlaybackStatus");
  if (!status) return std::nullopt;
  return statusNamed(*status) == MprisPlayer::Status::Playing;
}

bool isPlayerName(const std::string& busName) {
  constexpr std::string_view mirror = "org.mpris.MediaPlayer2.playerctld";
  return busName.starts_with(MprisPlayer::busNamePrefix) && busName != mirror;
}

} // namespace velmor
