#include "streams/TrackChanges.h"

#include "base/Text.h"

namespace velmor {

namespace {

/// Two texts that a DJ reads as the same come out the same.
std::string folded(const std::string& value) {
  const auto lower = text::lowercased(text::composed(value));
  return std::string(text::trimmed(lower));
}

} // namespace

std::string trackFingerprint(const NowPlayingTrack& track) {
  const auto title = folded(track.title);
  const auto artist = folded(track.artist);
  if (title.empty() || artist.empty()) return "";
  return title + '\0' + artist;
}

TrackChanges::News TrackChanges::take(const TrackLook& look) {
  if (look.track) {
    misses = 0;
    auto fingerprint = trackFingerprint(*look.track);
    if (fingerprint.empty() || fingerprint == last) return News::none;
    last = std::move(fingerprint);
    return News::changed;
  }
  if (++misses < missesUntilStopped || last.empty()) return News::none;
  last.clear();
  return News::stopped;
}

} // namespace velmor
