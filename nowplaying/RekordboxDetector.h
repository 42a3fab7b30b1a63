#pragma once

#include "platform/Accessibility.h"
#include "platform/Platform.h"
#include "platform/RunningApplications.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// One visible text of a window; the name is trimmed and never empty.
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

  [[nodiscard]] static std::optional<RunningApplication>
  rekordboxApplication(const Platform& platform);

  /// The decks that the window shows, at least one. Throws NowPlayingError: accessibilityDenied
  /// when windows may not be read, else noActiveSession.
  [[nodiscard]] static std::vector<RekordboxDeck>
  readDecksViaAccessibility(const Platform& platform);

  /// The focused window, else the largest; null when there is none. Throws
  /// NowPlayingError::accessibilityDenied.
  [[nodiscard]] static AccessibilityElementPtr
  rekordboxWindowElement(const AccessibilityElementPtr& app);

  /// The element's frame; the zero rectangle when it cannot be read.
  [[nodiscard]] static Rect axRect(AccessibilityElement& element);

  /// The element's title, else its value, trimmed; nothing when both are empty or not text.
  [[nodiscard]] static std::optional<std::string> elementName(AccessibilityElement& element);

  /// Appends the visible texts of the element and what is in it, parents first.
  static void walkUIAText(AccessibilityElement& element, int depth, std::vector<UIAText>& texts);

  /// The seconds of a clock such as "1:05"; 0 for anything else.
  [[nodiscard]] static std::int64_t parseClock(std::string_view text);

  /// Finds the decks among the texts of a window whose frame is `root`.
  [[nodiscard]] static std::vector<RekordboxDeck> parseDecks(const std::vector<UIAText>& texts,
                                                             const Rect& root);
};

} // namespace velmor
