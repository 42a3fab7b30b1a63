#include "crate/ranking/GenreLikeness.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

namespace velmor {

namespace {

using Words = std::vector<std::string>;

/// Spellings of one genre, as a text with blanks around each word.
constexpr std::array<std::pair<std::string_view, std::string_view>, 14> spellings{{
    {" drum n bass ", " dnb "},
    {" drum and bass ", " dnb "},
    {" drum bass ", " dnb "},
    {" hip hop ", " hiphop "},
    {" rap ", " hiphop "},
    {" r b ", " rnb "},
    {" r n b ", " rnb "},
    {" rhythm and blues ", " rnb "},
    {" psy trance ", " psytrance "},
    {" dance hall ", " dancehall "},
    {" electronica ", " electronic "},
    {" uk garage ", " ukg garage "},
    {" afrohouse ", " afro house "},
    {" techhouse ", " tech house "},
}};

/// Genres that are mixed with one another. A word may stand in several families.
constexpr std::array<std::string_view, 9> families{
    " house disco garage nu-disco nudisco funky afro amapiano ukg soulful deep ",
    " techno minimal tech industrial acid electro hard schranz house ",
    " trance psytrance goa progressive uplifting ",
    " dnb jungle breakbeat breaks dubstep bass grime ukg ",
    " hiphop rnb trap soul grime ",
    " funk soul disco boogie rnb jazz ",
    " reggae dub dancehall reggaeton ska ",
    " latin salsa reggaeton merengue bachata cumbia ",
    " pop dance edm rock indie alternative "};

constexpr double related = 0.4;

Words wordsOf(std::string_view genre) {
  std::string plain = " ";
  for (const char character : text::folded(genre)) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isLetter =
        byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9');
    if (isLetter) {
      plain += character;
    } else if (!plain.ends_with(' ')) {
      plain += ' ';
    }
  }
  if (!plain.ends_with(' ')) plain += ' ';
  for (const auto& [spelling, name] : spellings)
    plain = text::replacingAll(plain, spelling, name);
  Words words;
  for (const auto word : text::split(plain, ' '))
    words.emplace_back(word);
  std::ranges::sort(words);
  const auto repeated = std::ranges::unique(words);
  words.erase(repeated.begin(), repeated.end());
  return words;
}

/// A bit for each family that has one of the words.
std::uint32_t familiesOf(const Words& words) {
  std::uint32_t bits = 0;
  for (std::size_t index = 0; index < families.size(); ++index) {
    const auto has = [&](const std::string& word) {
      return families[index].find(" " + word + " ") != std::string_view::npos;
    };
    if (std::ranges::any_of(words, has)) bits |= 1U << index;
  }
  return bits;
}

double likeness(const Words& one, const Words& other) {
  Words common;
  std::ranges::set_intersection(one, other, std::back_inserter(common));
  const auto all = one.size() + other.size() - common.size();
  const double shared =
      all == 0 ? 0 : static_cast<double>(common.size()) / static_cast<double>(all);
  const bool isRelated = (familiesOf(one) & familiesOf(other)) != 0;
  return std::max(shared, isRelated ? related : 0);
}

} // namespace

GenreLikeness::GenreLikeness(std::string_view genre) : words(wordsOf(genre)) {}

double GenreLikeness::to(const std::string& genre) {
  const auto found = known.find(genre);
  if (found != known.end()) return found->second;
  return known.emplace(genre, likeness(words, wordsOf(genre))).first->second;
}

} // namespace velmor
