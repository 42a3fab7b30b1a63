#include "base/Number.h"
#include "base/Text.h"
#include "nowplaying/NowPlayingDetector.h"
#include "nowplaying/readers/RekordboxDetector.h"
#include "tests/fuzz/FuzzTarget.h"

#include <optional>

using namespace velmor;

namespace {

/// A text of a line "X Y WIDTH HEIGHT NAME".
std::optional<UIAText> textOf(std::string_view line) {
  const auto pieces = text::split(line, ' ', 4);
  if (pieces.size() < 5) return std::nullopt;
  const auto number = [&](std::size_t index) {
    return number::parseDouble(pieces[index]).value_or(0);
  };
  return UIAText{std::string(pieces[4]), {{number(0), number(1)}, {number(2), number(3)}}};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<UIAText> texts;
  for (const auto line : text::split(fuzz::text(data, size), '\n')) {
    (void)RekordboxDetector::parseClock(line);
    if (auto text = textOf(line)) texts.push_back(std::move(*text));
  }
  const auto root = texts.empty() ? Rect{} : texts.front().rect;
  const auto decks = RekordboxDetector::parseDecks(texts, root);
  fuzz::require(decks.size() <= texts.size());
  for (const auto& deck : decks) {
    fuzz::require(!deck.title.empty() && !deck.artist.empty() && deck.elapsed >= 0);
  }
  (void)NowPlayingDetector::selectRekordboxDeck(decks, {});
  return 0;
}
