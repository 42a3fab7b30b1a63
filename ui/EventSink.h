#pragma once

#include <optional>
#include <string>

namespace velmor {

/// Where the application's events go: the page.
class EventSink {
public:
  virtual ~EventSink() = default;

  /// Pushes an event; the payload is JSON text, inserted as it is, or absent.
  virtual void emit(const std::string& event, const std::optional<std::string>& jsonPayload) = 0;
};

/// The events that the page hears.
namespace event {
inline constexpr auto trackChanged = "velmor:track-changed";
inline constexpr auto trackStopped = "velmor:track-stopped";
inline constexpr auto suggestionsReady = "velmor:suggestions-ready";
inline constexpr auto analysisError = "velmor:analysis-error";
inline constexpr auto compactMode = "velmor:compact-mode";
inline constexpr auto showAbout = "velmor:show-about";
} // namespace event

} // namespace velmor
