#pragma once

#include <exception>
#include <string>

namespace velmor {

/// Why no playing track was found. The description is the sentence that the page shows.
class NowPlayingError : public std::exception {
public:
  enum class Case { automationDenied, accessibilityDenied, playbackPaused, noActiveSession };

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
