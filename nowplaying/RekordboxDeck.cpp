#include "nowplaying/RekordboxDeck.h"

#include "model/Text.h"

namespace velmor {

std::string RekordboxDeck::fingerprint() const {
  constexpr char separator = '\0';
  return text::lowercased(title) + separator + text::lowercased(artist);
}

} // namespace velmor
