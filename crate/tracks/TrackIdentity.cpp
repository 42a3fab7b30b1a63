#include "crate/tracks/TrackIdentity.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace velmor {

namespace {

using Words = std::vector<std::string>;

bool isOneOf(const std::string& word, const auto& words) {
  return std::ranges::find(words, word) != words.end();
}

constexpr std::array<std::string_view, 4> guestWords{"feat", "ft", "featuring", "with"};
/// Between the names of several artists, and before one.
constexpr std::array<std::string_view, 9> joiningWords{"and",  "vs",       "versus", "the", "x",
                                                       "pres", "presents", "y",      "und"};

/// Marks that keyboards lack, and what people type for them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 7> typography{
    {{"’", "'"}, {"‘", "'"}, {"“", " "}, {"”", " "}, {"–", " "}, {"—", " "}, {"…", " "}}};

/// Letters and digits in lower case without accents; everything else parts words. A bracket is a
/// word of its own, as a guest's name ends there.
Words wordsOf(std::string_view name) {
  Words words;
  std::string word;
  const auto end = [&] {
    if (!word.empty()) words.push_back(std::exchange(word, {}));
  };
  auto plain = text::folded(name);
  for (const auto& [fancy, usual] : typography)
    if (plain.find(fancy) != std::string::npos) plain = text::replacingAll(plain, fancy, usual);
  for (const char character : plain) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isLetter =
        byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') || byte == '$';
    if (isLetter) {
      word += character;
    } else if (character == '&') {
      end();
      words.emplace_back("and");
    } else if (std::string_view("([)]").find(character) != std::string_view::npos) {
      end();
      words.emplace_back(character == '(' || character == '[' ? "(" : ")");
    } else if (character != '\'' && character != '.') {
      // "Don't" and "Dont", "J.B." and "JB" are one word.
      end();
    }
  }
  end();
  return words;
}

/// Without guests, from "feat" to the next bracket. "with" counts only right behind a bracket: it
/// is a word of many titles.
Words withoutGuests(const Words& words) {
  Words kept;
  bool inGuests = false;
  for (std::size_t index = 0; index < words.size(); ++index) {
    const auto& word = words[index];
    const bool isBracket = word == "(" || word == ")";
    const bool opened = index > 0 && words[index - 1] == "(";
    if (isBracket) {
      inGuests = false;
    } else if (index > 0 && isOneOf(word, guestWords) && (word != "with" || opened)) {
      inGuests = true;
    }
    if (!inGuests && !isBracket) kept.push_back(word);
  }
  return kept;
}

bool dropEnd(Words& words, const std::vector<std::string_view>& end) {
  if (words.size() <= end.size()) return false;
  const auto start = words.end() - static_cast<std::ptrdiff_t>(end.size());
  if (!std::equal(end.begin(), end.end(), start)) return false;
  words.erase(start, words.end());
  return true;
}

/// Drops one of the endings, the first that fits.
void dropOne(Words& words, const std::vector<std::vector<std::string_view>>& endings) {
  for (const auto& ending : endings) {
    if (dropEnd(words, ending)) return;
  }
}

std::uint64_t hash(const std::string& artist, const Words& title) {
  std::string whole = artist;
  for (const auto& word : title)
    whole += '\n' + word;
  return std::hash<std::string>{}(whole);
}

/// A name of one or several artists in the form in which its spellings are equal.
std::string foldedArtist(std::string_view name) {
  auto words = withoutGuests(wordsOf(name));
  const auto all = words;
  std::erase_if(words, [](const auto& word) { return isOneOf(word, joiningWords); });
  // "X", "The The" and "The XX" are names too.
  if (words.empty()) words = all;
  std::ranges::sort(words);
  std::string result;
  for (const auto& word : words)
    result += (result.empty() ? "" : " ") + word;
  return result;
}

} // namespace

TrackIdentity TrackIdentity::of(std::string_view artist, std::string_view title) {
  static const std::vector<std::vector<std::string_view>> asReleased{
      {"original", "mix"}, {"original", "version"}, {"original"}, {"album", "version"}};
  static const std::vector<std::vector<std::string_view>> lengths{
      {"extended", "mix"}, {"extended", "version"},
      {"extended"},        {"radio", "edit"},
      {"radio", "mix"},    {"radio", "version"},
      {"club", "mix"},     {"single", "version"},
      {"clean"},           {"dirty"},
      {"explicit"}};
  const auto who = foldedArtist(artist);
  auto words = withoutGuests(wordsOf(title));
  // A name without a letter that counts, such as "???", is only equal to itself.
  if (words.empty()) words.emplace_back(title);
  dropOne(words, asReleased);
  TrackIdentity result;
  result.artist = hash(who, {});
  result.identity = hash(who, words);
  dropOne(words, lengths);
  result.song = hash(who, words);
  return result;
}

void TrackIdentity::complete(CrateTrack& track) {
  if (track.artist.empty()) {
    constexpr std::string_view separator = " - ";
    const auto position = track.title.find(separator);
    if (position != std::string::npos) {
      const auto artist = text::trimmed(std::string_view(track.title).substr(0, position));
      const auto title =
          text::trimmed(std::string_view(track.title).substr(position + separator.size()));
      if (!artist.empty() && !title.empty()) {
        track.artist = artist;
        track.title = std::string(title);
      }
    }
  }
  const auto names = of(track.artist, track.title);
  track.identity = names.identity;
  track.song = names.song;
  track.artistIdentity = names.artist;
}

} // namespace velmor
