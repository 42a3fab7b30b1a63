#pragma once

#include "model/Records.h"

#include <functional>
#include <optional>
#include <vector>

namespace velmor {

/// What is known of the set at the moment, and who wants to hear of it. Main thread only.
class TrackFeed {
public:
  using Track = std::optional<NowPlayingTrack>;
  using TrackListener = std::function<void(const Track&)>;
  using SuggestionListener = std::function<void(const VisionResult&)>;

  /// Listeners live as long as the feed. They hear what comes from now on; a track without a value
  /// is the end of playback, or that nothing plays when the first look is over.
  void onTrack(TrackListener listener) { trackListeners.push_back(std::move(listener)); }
  void onSuggestions(SuggestionListener listener) {
    suggestionListeners.push_back(std::move(listener));
  }

  /// Says what plays. What has been said before is not told again.
  void setTrack(const Track& next);
  void setSuggestions(const VisionResult& next);

  /// Nobody looks any more, so nothing is known of the track.
  void forgetTrack();

  /// False until something has been said about the track.
  [[nodiscard]] bool isKnown() const { return known; }
  [[nodiscard]] const Track& track() const { return current; }
  [[nodiscard]] const std::optional<VisionResult>& suggestions() const { return last; }

private:
  bool known = false;
  Track current;
  std::optional<VisionResult> last;
  std::vector<TrackListener> trackListeners;
  std::vector<SuggestionListener> suggestionListeners;
};

} // namespace velmor
