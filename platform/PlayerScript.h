#pragma once

#include <string>

namespace velmor {

/// A script that asks a media player something. A system with a script tool runs its text; one
/// without answers the question itself and need not know the text.
struct PlayerScript {
  /// Each question, and what may be answered.
  enum class Question {
    /// `notPlaying`; or title, artist and album with `fieldSeparator` between them; or "" when the
    /// player plays but lacks one of the three.
    CurrentTrack,
    /// `yes` or `no`; a stopped player is not paused.
    IsPaused
  };

  Question question;
  /// The player's name as people know it, such as "Spotify".
  std::string application;
  /// In AppleScript.
  std::string text;

  static constexpr auto notPlaying = "STATE:paused";
  static constexpr char fieldSeparator = '\x1E';
  static constexpr auto yes = "yes";
  static constexpr auto no = "no";
};

} // namespace velmor
