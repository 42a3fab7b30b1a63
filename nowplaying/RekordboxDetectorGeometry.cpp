#include "model/CamelotKey.h"
#include "model/Number.h"
#include "model/Text.h"
#include "nowplaying/RekordboxDetector.h"

#include <algorithm>
#include <cmath>
#include <limits>

// rekordbox gives its texts no names of their own: a deck is known by a large title, the artist
// right below it, and the clock, tempo and key on the artist's row. Distances are in points.

namespace velmor {

namespace {

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

/// One to three digits, a colon and two digits.
bool isClock(std::string_view text) {
  const auto colon = text.find(':');
  if (colon < 1 || colon > 3 || text.size() != colon + 3) return false;
  return std::ranges::all_of(text.substr(0, colon), isDigit) &&
         std::ranges::all_of(text.substr(colon + 1), isDigit);
}

bool isTempo(std::string_view text) {
  constexpr double slowest = 30;
  constexpr double fastest = 300;
  const auto tempo = number::parseDouble(text);
  return tempo && *tempo >= slowest && *tempo <= fastest;
}

bool canBeTitle(const Rect& text, const Rect& root) {
  constexpr double leastHeight = 15;
  constexpr double leastShareOfWidth = 0.25;
  constexpr double upperShareOfHeight = 0.55;
  return text.height() >= leastHeight && text.width() >= leastShareOfWidth * root.width() &&
         text.minY() <= root.minY() + upperShareOfHeight * root.height();
}

bool isBelow(const Rect& text, const Rect& title) {
  constexpr double reach = 32;
  constexpr double heightTolerance = 4;
  return std::abs(text.minX() - title.minX()) <= reach && text.minY() > title.minY() &&
         text.minY() - title.minY() <= reach && text.height() <= title.height() + heightTolerance;
}

/// The uppermost text right below the title; null when there is none.
const UIAText* findArtist(const std::vector<UIAText>& texts, const UIAText& title) {
  const UIAText* artist = nullptr;
  for (const auto& text : texts) {
    if (!isBelow(text.rect, title.rect)) continue;
    if (!artist || text.rect.minY() < artist->rect.minY()) artist = &text;
  }
  return artist;
}

/// True for a text on the artist's row, right of the artist and within the deck.
bool isDetail(const Rect& text, const Rect& title, const Rect& artist, const Rect& root) {
  constexpr double rowTolerance = 8;
  constexpr double artistShare = 0.65;
  constexpr double deckShareOfWidth = 0.48;
  return std::abs(text.minY() - artist.minY()) <= rowTolerance &&
         text.minX() > artist.minX() + artistShare * artist.width() &&
         text.minX() >= title.minX() - rowTolerance &&
         text.minX() <= title.minX() + deckShareOfWidth * root.width();
}

/// Takes a detail as clock, tempo or key, whichever it can be first. A remaining time begins with
/// a minus sign and is no clock.
void addDetail(RekordboxDeck& deck, const std::string& text) {
  if (isClock(text)) {
    deck.elapsed = std::max(deck.elapsed, RekordboxDetector::parseClock(text));
  } else if (deck.bpm.empty() && isTempo(text)) {
    deck.bpm = text;
  } else if (deck.key.empty() && !CamelotKey::toCamelot(text).empty()) {
    deck.key = text;
  }
}

} // namespace

std::int64_t RekordboxDetector::parseClock(std::string_view text) {
  if (text.starts_with('-')) return 0;
  const auto pieces = text::split(text, ':');
  if (pieces.size() != 2) return 0;
  constexpr std::int64_t secondsPerMinute = 60;
  constexpr auto mostMinutes = std::numeric_limits<std::int64_t>::max() / secondsPerMinute - 1;
  const auto minutes = number::parseInteger<std::int64_t>(pieces[0]);
  const auto seconds = number::parseInteger<std::int64_t>(pieces[1]);
  if (!minutes || !seconds || *seconds >= secondsPerMinute || *minutes > mostMinutes) return 0;
  return *minutes * secondsPerMinute + *seconds;
}

std::vector<RekordboxDeck> RekordboxDetector::parseDecks(const std::vector<UIAText>& texts,
                                                         const Rect& root) {
  std::vector<RekordboxDeck> decks;
  for (const auto& title : texts) {
    if (!canBeTitle(title.rect, root)) continue;
    const auto* const artist = findArtist(texts, title);
    if (!artist || artist->name.empty()) continue;
    RekordboxDeck deck;
    deck.title = title.name;
    deck.artist = artist->name;
    deck.top = title.rect.minY();
    for (const auto& text : texts) {
      if (isDetail(text.rect, title.rect, artist->rect, root)) addDetail(deck, text.name);
    }
    decks.push_back(std::move(deck));
  }
  return decks;
}

} // namespace velmor
