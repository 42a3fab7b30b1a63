#include "streams/TrackFeed.h"

#include "streams/TrackChanges.h"

namespace velmor {

namespace {

bool isSame(const TrackFeed::Track& one, const TrackFeed::Track& other) {
  if (!one || !other) return one.has_value() == other.has_value();
  return trackFingerprint(*one) == trackFingerprint(*other);
}

} // namespace

void TrackFeed::setTrack(const Track& next) {
  if (known && isSame(current, next)) return;
  known = true;
  current = next;
  for (const auto& listener : trackListeners)
    listener(current);
}

void TrackFeed::forgetTrack() {
  known = false;
  current.reset();
}

void TrackFeed::setSuggestions(const VisionResult& next) {
  if (last && *last == next) return;
  last = next;
  for (const auto& listener : suggestionListeners)
    listener(next);
}

} // namespace velmor
