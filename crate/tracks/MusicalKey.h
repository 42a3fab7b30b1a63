#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// A key as its place on the Camelot wheel: neighbours in number mix well, and so do the two keys
/// of one number.
struct MusicalKey {
  /// 1 to 12.
  int number = 1;
  /// "A" on the wheel; major is "B".
  bool minor = false;

  bool operator==(const MusicalKey&) const = default;

  /// The key on the note that lies so many semitones above C, 0 to 11.
  [[nodiscard]] static MusicalKey onNote(int semitones, bool minor);

  /// The key in any spelling that DJ programs and their tools write: "Am", "A minor", "8A", "08a",
  /// "1m" (Open Key), "F♯/G♭", "A#m +50", "8A - Energy 7". A note alone is major. Nothing for all
  /// else, as for "o", which says that there is no key.
  [[nodiscard]] static std::optional<MusicalKey> read(std::string_view text);

  /// "8A".
  [[nodiscard]] std::string text() const;

  /// The same key some semitones higher, or lower below 0: what a change of pitch makes of it.
  [[nodiscard]] MusicalKey shifted(int semitones) const;
};

/// How the key of the next track lies to that of the playing one.
enum class KeyRelation {
  same,
  stepUp,
  stepDown,
  /// Major and minor of the same notes.
  relative,
  /// One step up or down, and from minor to major or back.
  diagonal,
  twoUp,
  twoDown,
  /// The same mode one semitone higher: a lift.
  semitoneUp,
  unrelated
};

[[nodiscard]] KeyRelation keyRelation(MusicalKey from, MusicalKey to);

} // namespace velmor
