#pragma once

#include "model/Records.h"

#include <string>

namespace velmor {

/// Tracks and rankings as the command line prints them; each text ends with a line feed. Readable
/// texts have no control characters: a title could otherwise command the terminal. Any thread.
struct TrackText {
  /// One line for people, as overlays show it.
  [[nodiscard]] static std::string readable(const NowPlayingTrack& track);
  /// One line with a JSON object. Throws EncodingError when the tempo is not a number.
  [[nodiscard]] static std::string json(const NowPlayingTrack& track);
  /// The track and the numbered list of suggestions, for people. The label says what the track is.
  [[nodiscard]] static std::string readable(const VisionResult& result,
                                            const std::string& label = "Now playing");
};

} // namespace velmor
