#pragma once

#include <exception>
#include <string>

namespace velmor {

/// Why no playing track was found. The page and the command line show the description as it is.
class NowPlayingError : public std::exception {
public:
  enum class Case {
    /// The media player may not be asked.
    automationDenied,
    /// The DJ program's window may not be read.
    accessibilityDenied,
    /// A media player runs, but is paused.
    playbackPaused,
    /// No source has a playing track.
    noActiveSession
  };

  [[nodiscard]] static NowPlayingError automationDenied(const std::string& app);
  [[nodiscard]] static NowPlayingError accessibilityDenied(const std::string& app);
  [[nodiscard]] static NowPlayingError playbackPaused(const std::string& app);
  [[nodiscard]] static NowPlayingError noActiveSession();

  [[nodiscard]] Case errorCase() const { return kind; }
  [[nodiscard]] const std::string& errorDescription() const { return description; }
  [[nodiscard]] const char* what() const noexcept override { return description.c_str(); }

private:
  NowPlayingError(Case which, std::string text) : kind(which), description(std::move(text)) {}

  Case kind;
  std::string description;
};

} // namespace velmor
