#include "crate/tracks/MusicalKey.h"

#include "base/Number.h"
#include "base/Text.h"

namespace velmor {

namespace {

constexpr int wheel = 12;

int around(int value) {
  return ((value % wheel) + wheel) % wheel;
}

/// "8A", "08a", and "1m" or "1d" of Open Key, whose 1 is Camelot's 8.
std::optional<MusicalKey> readNumbered(std::string_view text) {
  const auto digits = text.find_first_not_of("0123456789");
  if (digits == 0 || digits == std::string_view::npos || digits > 2) return std::nullopt;
  const int number = number::parseInteger<int>(text.substr(0, digits)).value_or(0);
  const auto rest = text::trimmed(text.substr(digits));
  if (number < 1 || number > wheel || rest.empty()) return std::nullopt;
  constexpr std::string_view ends = " -+/,;([";
  if (rest.size() > 1 && ends.find(rest[1]) == std::string_view::npos) return std::nullopt;
  switch (rest.front()) {
  case 'a':
  case 'A':
    return MusicalKey{number, true};
  case 'b':
  case 'B':
    return MusicalKey{number, false};
  case 'm':
  case 'M':
    return MusicalKey{around(number + 6) + 1, true};
  case 'd':
  case 'D':
    return MusicalKey{around(number + 6) + 1, false};
  default:
    return std::nullopt;
  }
}

/// True for minor, false for major, from what stands behind the note.
std::optional<bool> readMode(std::string_view text) {
  const auto lower = text::lowercased(text);
  if (lower.starts_with("min") || lower.starts_with("mol")) return true;
  if (lower.starts_with("maj") || lower.starts_with("dur")) return false;
  // What follows is how far the recording is out of tune, or another name of the note.
  const auto isEnd = [](std::string_view rest) {
    constexpr std::string_view ends = " +-/0123456789,;([";
    return rest.empty() || ends.find(rest.front()) != std::string_view::npos;
  };
  if (isEnd(text)) return false;
  if (text.front() == 'm' && isEnd(text.substr(1))) return true;
  if (text.front() == 'M' && isEnd(text.substr(1))) return false;
  return std::nullopt;
}

std::optional<MusicalKey> readNamed(std::string_view text) {
  constexpr std::string_view notes = "C D EF G A B";
  const auto letter = notes.find(text::asciiUppercased(text.substr(0, 1)).front());
  if (letter == std::string_view::npos || text.front() == ' ') return std::nullopt;
  int note = static_cast<int>(letter);
  text.remove_prefix(1);
  if (text.starts_with('#') || text.starts_with('b')) {
    note += text.front() == '#' ? 1 : -1;
    text.remove_prefix(1);
  }
  // "F#/Gbm": the mode stands behind the second name.
  if (text.starts_with('/')) return readNamed(text.substr(1));
  if (text.starts_with('-') && text.size() > 1 && (text[1] == 'm' || text[1] == 'M')) {
    text.remove_prefix(1);
  }
  const auto minor = readMode(text::trimmed(text));
  if (!minor) return std::nullopt;
  return MusicalKey::onNote(around(note), *minor);
}

} // namespace

MusicalKey MusicalKey::onNote(int semitones, bool minor) {
  // A step on the wheel is a fifth; C major and A minor are at 8.
  const int major = minor ? semitones + 3 : semitones;
  return {around(major * 7 + 7) + 1, minor};
}

std::optional<MusicalKey> MusicalKey::read(std::string_view text) {
  auto plain = text::replacingAll(text::trimmed(text), "♯", "#");
  plain = text::replacingAll(plain, "♭", "b");
  plain = text::replacingAll(plain, "–", "-");
  if (plain.empty()) return std::nullopt;
  if (const auto numbered = readNumbered(plain)) return numbered;
  return readNamed(plain);
}

std::string MusicalKey::text() const {
  return std::to_string(number) + (minor ? "A" : "B");
}

MusicalKey MusicalKey::shifted(int semitones) const {
  return {around(number - 1 + semitones * 7) + 1, minor};
}

KeyRelation keyRelation(MusicalKey from, MusicalKey to) {
  const int steps = around(to.number - from.number);
  if (from.minor != to.minor) {
    if (steps == 0) return KeyRelation::relative;
    return steps == 1 || steps == wheel - 1 ? KeyRelation::diagonal : KeyRelation::unrelated;
  }
  switch (steps) {
  case 0:
    return KeyRelation::same;
  case 1:
    return KeyRelation::stepUp;
  case 2:
    return KeyRelation::twoUp;
  case 7:
    return KeyRelation::semitoneUp;
  case wheel - 2:
    return KeyRelation::twoDown;
  case wheel - 1:
    return KeyRelation::stepDown;
  default:
    return KeyRelation::unrelated;
  }
}

} // namespace velmor
