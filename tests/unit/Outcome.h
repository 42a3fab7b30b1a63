#pragma once

#include "model/NowPlayingTrack.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace velmor {

/// What a reader of tables compares: "Title / Artist / Album", "none", or what the failure says.
template <typename Reader>
std::string outcome(Reader reader) {
  try {
    const std::optional<NowPlayingTrack> track = reader();
    return track ? track->title + " / " + track->artist + " / " + track->album : "none";
  } catch (const std::exception& failure) {
    return failure.what();
  }
}

inline const std::string noSession = "No active media session found. Start playback in a "
                                     "supported DJ app, then try again.";

} // namespace velmor
