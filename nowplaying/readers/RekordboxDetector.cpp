#include "nowplaying/readers/RekordboxDetector.h"

#include "base/Number.h"
#include "base/Text.h"
#include "model/CamelotKey.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "platform/Accessibility.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace velmor {

std::string RekordboxDeck::fingerprint() const {
  constexpr char separator = '\0';
  return text::lowercased(title) + separator + text::lowercased(artist);
}

// The application, its window and the texts in it.

namespace {

constexpr int deepestLevel = 32;
constexpr Size smallestWindow{320, 240};

std::optional<RunningApplication> rekordboxApplication(const Platform& platform) {
  return ProcessUtils::application(platform, {.bundleIdentifier = "com.pioneerdj.rekordboxdj",
                                              .identifierFragment = "rekordboxdj",
                                              .names = {"rekordbox"},
                                              .skipsTerminated = true});
}

/// The attribute's value, when it can be read and has this type.
template <typename Value>
std::optional<Value> read(AccessibilityElement& element, const char* attribute) {
  auto result = element.attribute(attribute);
  if (result.error != accessibilityError::success) return std::nullopt;
  auto* const value = std::get_if<Value>(&result.value);
  return value ? std::optional<Value>(std::move(*value)) : std::nullopt;
}

std::optional<std::string> readText(AccessibilityElement& element, const char* attribute) {
  const auto value = read<std::string>(element, attribute);
  if (!value) return std::nullopt;
  const auto trimmed = text::trimmed(*value);
  if (trimmed.empty()) return std::nullopt;
  return std::string(text::bounded(trimmed));
}

/// rekordbox describes its decks only to those who ask for the full interface.
void enhanceUserInterface(AccessibilityElement& element) {
  element.setAttribute("AXEnhancedUserInterface", true);
}

/// The element's frame; the zero rectangle when it cannot be read.
Rect axRect(AccessibilityElement& element) {
  const auto position = read<Point>(element, "AXPosition");
  const auto size = read<Size>(element, "AXSize");
  if (!position || !size) return {};
  return {*position, *size};
}

/// The element's title, else its value; nothing when both are blank or not text.
std::optional<std::string> elementName(AccessibilityElement& element) {
  const auto title = readText(element, "AXTitle");
  return title ? title : readText(element, "AXValue");
}

/// The first of the largest; null when there is none.
AccessibilityElementPtr largest(const std::vector<AccessibilityElementPtr>& windows) {
  AccessibilityElementPtr found;
  double largestArea = 0;
  for (const auto& window : windows) {
    const auto rect = axRect(*window);
    const double area = rect.width() * rect.height();
    if (found && area <= largestArea) continue;
    found = window;
    largestArea = area;
  }
  return found;
}

/// The focused window, else the largest; null when there is none. Throws
/// NowPlayingError::accessibilityDenied.
AccessibilityElementPtr rekordboxWindowElement(AccessibilityElement& app) {
  const auto focused = read<AccessibilityElementPtr>(app, "AXFocusedWindow");
  if (focused && *focused) return *focused;
  const auto windows = app.attribute("AXWindows");
  if (windows.error == accessibilityError::apiDisabled) {
    throw NowPlayingError::accessibilityDenied("rekordbox");
  }
  if (windows.error != accessibilityError::success) return nullptr;
  const auto* const list = std::get_if<std::vector<AccessibilityElementPtr>>(&windows.value);
  return list ? largest(*list) : nullptr;
}

/// Appends the visible texts of the element and what is in it, parents first.
void walkUIAText(AccessibilityElement& element, int depth, std::vector<UIAText>& texts) {
  if (depth > deepestLevel) return;
  if (auto name = elementName(element)) {
    const auto rect = axRect(element);
    if (rect.width() > 0 && rect.height() > 0) texts.push_back({std::move(*name), rect});
  }
  const auto children = read<std::vector<AccessibilityElementPtr>>(element, "AXChildren");
  if (!children) return;
  for (const auto& child : *children)
    walkUIAText(*child, depth + 1, texts);
}

} // namespace

bool RekordboxDetector::isRunning(const Platform& platform) {
  return rekordboxApplication(platform) || ProcessUtils::isRunning(platform, {"rekordbox"});
}

std::vector<RekordboxDeck> RekordboxDetector::readDecksViaAccessibility(const Platform& platform) {
  const auto application = rekordboxApplication(platform);
  if (!application) throw NowPlayingError::noActiveSession();
  const auto app = platform.accessibility.application(application->processIdentifier);
  enhanceUserInterface(*app);
  const auto window = rekordboxWindowElement(*app);
  if (!window) throw NowPlayingError::noActiveSession();
  enhanceUserInterface(*window);
  const auto root = axRect(*window);
  if (!(root.width() > smallestWindow.width && root.height() > smallestWindow.height)) {
    throw NowPlayingError::noActiveSession();
  }
  std::vector<UIAText> texts;
  walkUIAText(*window, 0, texts);
  auto decks = parseDecks(texts, root);
  if (decks.empty()) throw NowPlayingError::noActiveSession();
  return decks;
}

// The decks among the texts. rekordbox gives its texts no names of their own: a deck is known by a
// large title, the artist right below it, and the clock, tempo and key on the artist's row.

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

} // namespace velmor
