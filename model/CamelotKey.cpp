#include "model/CamelotKey.h"

#include "base/Text.h"

#include <array>
#include <optional>
#include <regex>
#include <utility>

namespace velmor {

namespace {

using Entry = std::pair<std::string_view, std::string_view>;

constexpr std::array<Entry, 35> camelotKeys{{
    {"G# minor", "1A"},  {"Ab minor", "1A"},  {"D# minor", "2A"},  {"Eb minor", "2A"},
    {"A# minor", "3A"},  {"Bb minor", "3A"},  {"F minor", "4A"},   {"C minor", "5A"},
    {"G minor", "6A"},   {"D minor", "7A"},   {"A minor", "8A"},   {"E minor", "9A"},
    {"B minor", "10A"},  {"F# minor", "11A"}, {"Gb minor", "11A"}, {"C# minor", "12A"},
    {"Db minor", "12A"}, {"B major", "1B"},   {"Cb major", "1B"},  {"F# major", "2B"},
    {"Gb major", "2B"},  {"C# major", "3B"},  {"Db major", "3B"},  {"G# major", "4B"},
    {"Ab major", "4B"},  {"D# major", "5B"},  {"Eb major", "5B"},  {"A# major", "6B"},
    {"Bb major", "6B"},  {"F major", "7B"},   {"C major", "8B"},   {"G major", "9B"},
    {"D major", "10B"},  {"A major", "11B"},  {"E major", "12B"},
}};

bool isCamelot(const std::string& text) {
  static const std::regex pattern("^(?:[1-9]|1[0-2])[ab]$", std::regex::icase);
  return std::regex_match(text, pattern);
}

std::optional<std::string_view> modeFromWords(const std::string& lower) {
  const auto has = [&](std::string_view word) { return lower.find(word) != std::string::npos; };
  if (has("minor") || has(" min") || lower.ends_with("min")) return "minor";
  if (has("major") || has(" maj") || lower.ends_with("maj")) return "major";
  return std::nullopt;
}

/// Takes the mode's letter off the root's end, as in "F#m".
std::optional<std::string_view> takeModeSuffix(std::string& root) {
  if (root.size() < 2) return std::nullopt;
  const char last = root.back();
  if (last != 'm' && last != 'M') return std::nullopt;
  root.pop_back();
  return last == 'm' ? "minor" : "major";
}

} // namespace

std::string CamelotKey::toCamelot(std::string_view key) {
  std::string asGiven(text::trimmed(key));
  if (asGiven.empty()) return "";

  const std::string compact = text::replacingAll(asGiven, " ", "");
  if (isCamelot(compact)) return text::asciiUppercased(compact);

  std::string spelled = text::replacingAll(asGiven, "♯", "#");
  spelled = text::replacingAll(spelled, "♭", "b");
  spelled = text::replacingAll(spelled, "–", " ");
  spelled = std::string(text::trimmed(text::replacingAll(spelled, "-", " ")));

  const auto words = text::split(spelled, ' ');
  if (words.empty()) return asGiven;
  std::string root(words.front());
  auto mode = modeFromWords(text::lowercased(spelled));
  if (!mode) mode = takeModeSuffix(root);
  if (!mode) return asGiven;

  const std::string name =
      text::asciiUppercased(root.substr(0, 1)) + root.substr(1) + " " + std::string(*mode);
  for (const auto& [known, code] : camelotKeys) {
    if (name == known) return std::string(code);
  }
  return asGiven;
}

} // namespace velmor
