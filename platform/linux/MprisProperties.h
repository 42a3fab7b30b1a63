#pragma once

#include "platform/linux/GlibHandles.h"
#include "platform/linux/MprisPlayer.h"

namespace velmor {

/// A player as its properties describe it: the dictionaries (a{sv}) of the interfaces
/// org.mpris.MediaPlayer2.Player and org.mpris.MediaPlayer2, the latter null when it has none.
/// Types are checked before anything is read: GLib ends the process otherwise.
[[nodiscard]] MprisPlayer playerFromProperties(const std::string& busName, _GVariant& player,
                                               _GVariant* identity);

/// Whether a PlaybackStatus among the properties says "Playing"; nothing when there is none.
[[nodiscard]] std::optional<bool> isPlaying(_GVariant& properties);

} // namespace velmor
