#pragma once

#include <optional>
#include <string>

namespace velmor {

/// Where the application's events go: the page. Main thread only.
class EventSink {
public:
  virtual ~EventSink() = default;

  /// Pushes an event. The payload is JSON text that goes to the page as it is, unchecked; without
  /// one the page gets null.
  virtual void emit(const std::string& event, const std::optional<std::string>& jsonPayload) = 0;
};

/// The events that the page hears: all there are, each with its payload.
namespace event {
/// A new track plays: its TrackMetadata.
inline constexpr auto trackChanged = "velmor:track-changed";
/// Nothing plays any more: null.
inline constexpr auto trackStopped = "velmor:track-stopped";
/// The watcher's suggestions for the playing track: a VisionResult.
inline constexpr auto suggestionsReady = "velmor:suggestions-ready";
/// The watcher could not suggest anything, or may not read rekordbox: a text for the user.
inline constexpr auto analysisError = "velmor:analysis-error";
/// The window has become the compact square, true, or the full window again, false.
inline constexpr auto compactMode = "velmor:compact-mode";
/// A reading of the DJ's own music has begun, goes on or has ended: a CrateState. At most four
/// times a second.
inline constexpr auto crateChanged = "velmor:crate-changed";
/// The user wants the window closed, and the page has something to settle first: null.
inline constexpr auto closeAsked = "velmor:close-asked";
/// The page is to say what Velmor is: null.
inline constexpr auto showAbout = "velmor:show-about";
} // namespace event

} // namespace velmor
