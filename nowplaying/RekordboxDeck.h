#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmor {

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

} // namespace velmor
