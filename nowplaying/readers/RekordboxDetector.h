#pragma once

#include "platform/Geometry.h"
#include "platform/Platform.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// One visible text of a window; the name is trimmed and never empty. Distances are in points, from
/// the top left of the main screen.
struct UIAText {
  std::string name;
  Rect rect;
};

/// One deck as rekordbox shows it.
struct RekordboxDeck {
  std::string title;
  std::string artist;
  /// The texts as shown; "" when none was recognised.
  std::string bpm;
  std::string key;
  /// Playing time in whole seconds; 0 when no clock was recognised.
  std::int64_t elapsed = 0;
  /// Where the title begins; smaller is higher on screen.
  double top = 0;

  /// Tells tracks apart from one poll to the next, whatever deck they are on. A deck without
  /// title and artist has `emptyFingerprint`.
  [[nodiscard]] std::string fingerprint() const;
  static constexpr std::string_view emptyFingerprint{"\0", 1};
};

/// Reads rekordbox's decks from the texts of its window, told apart by where they stand. Stateless;
/// any thread.
class RekordboxDetector {
public:
  [[nodiscard]] static bool isRunning(const Platform& platform);

  /// The decks that the window shows, at least one. Throws NowPlayingError: accessibilityDenied
  /// when windows may not be read, else noActiveSession.
  [[nodiscard]] static std::vector<RekordboxDeck>
  readDecksViaAccessibility(const Platform& platform);

  /// Finds the decks among the texts of a window whose frame is `root`.
  [[nodiscard]] static std::vector<RekordboxDeck> parseDecks(const std::vector<UIAText>& texts,
                                                             const Rect& root);

  /// The seconds of a clock such as "1:05"; 0 for anything else.
  [[nodiscard]] static std::int64_t parseClock(std::string_view text);
};

} // namespace velmor
