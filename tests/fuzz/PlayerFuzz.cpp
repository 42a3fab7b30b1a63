#include "base/Text.h"
#include "platform/linux/media/MprisPlayer.h"
#include "tests/fuzz/FuzzTarget.h"

#include <gio/gio.h>

#include <cmath>

using namespace velmor;

template <>
struct velmor::GlibRelease<GBytes> {
  void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
};

namespace {

/// Bytes as a message of the bus carries a dictionary of properties, whatever they say.
VariantPtr properties(std::string_view bytes) {
  const GlibPtr<GBytes> owned(g_bytes_new(bytes.data(), bytes.size()));
  auto* const raw = g_variant_new_from_bytes(G_VARIANT_TYPE_VARDICT, owned.get(), FALSE);
  const VariantPtr variant(g_variant_ref_sink(raw));
  return VariantPtr(g_variant_get_normal_form(variant.get()));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto input = fuzz::text(data, size);
  const auto half = input.size() / 2;
  const auto player = playerFromProperties("org.mpris.MediaPlayer2.x", properties(input),
                                           properties(input.substr(half)));
  fuzz::require(!player.rate || std::isfinite(*player.rate));
  for (const auto& text : {player.title, player.artist, player.album, player.identity})
    fuzz::require(!text || text::bounded(*text) == *text);
  (void)bundleIdentifier(player);
  (void)isPlaying(properties(input));
  return 0;
}
