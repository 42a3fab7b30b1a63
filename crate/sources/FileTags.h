#pragma once

#include "crate/tracks/CrateTrack.h"

#include <filesystem>
#include <optional>

namespace velmor {

/// The tags of a music file.
struct FileTags {
  /// True for the kinds of files that can be read: mp3, flac, m4a, ogg, opus, wav, aiff.
  [[nodiscard]] static bool isMusic(const std::filesystem::path& file);

  /// What the tags say, with tempo, key and energy as DJ tools write them; the file's name is the
  /// title when they name none. Without identity. Nothing when the file is none of its kind. Any
  /// thread.
  [[nodiscard]] static std::optional<CrateTrack> read(const std::filesystem::path& file);
};

} // namespace velmor
