#include "crate/sources/TraktorCollection.h"

#include "base/Number.h"
#include "base/Text.h"
#include "crate/tracks/CrateDates.h"

#include <algorithm>
#include <utility>

namespace velmor {

namespace {

constexpr int notes = 12;

/// "/:Music/:House/:" and "1.mp3" as a path; a volume counts when it is a drive of Windows.
std::string pathOf(const XmlStream& location) {
  const auto volume = location.attribute("VOLUME");
  const bool isDrive = volume.size() == 2 && volume[1] == ':';
  return (isDrive ? volume : "") + text::replacingAll(location.attribute("DIR"), "/:", "/") +
         location.attribute("FILE");
}

/// 0 to 11 from C major up, 12 to 23 from C minor up.
std::optional<MusicalKey> numberedKey(const std::string& text) {
  const auto value = number::parseInteger<int>(text).value_or(-1);
  if (value < 0 || value >= 2 * notes) return std::nullopt;
  return MusicalKey::onNote(value % notes, value >= notes);
}

} // namespace

void TraktorCollection::element(const XmlStream& xml, const Take& take) {
  const auto name = xml.name();
  if (xml.depth() <= 2) end(take);
  if (xml.depth() == 1) isInCollection = name == "COLLECTION";
  if (xml.depth() == 2 && isInCollection && name == "ENTRY") {
    isInEntry = true;
    track.title = xml.attribute("TITLE");
    track.artist = xml.attribute("ARTIST");
  }
  if (!isInEntry || xml.depth() != 3) return;
  if (name == "LOCATION") {
    track.file = pathOf(xml);
  } else if (name == "ALBUM") {
    track.album = xml.attribute("TITLE");
  } else if (name == "INFO") {
    track.genre = xml.attribute("GENRE");
    if (!track.key) track.key = MusicalKey::read(xml.attribute("KEY"));
    track.year = CrateDates::year(xml.attribute("RELEASE_DATE"));
  } else if (name == "TEMPO") {
    track.bpm = std::max(0.0, number::parseDouble(xml.attribute("BPM")).value_or(0));
  } else if (name == "MUSICAL_KEY") {
    // What Traktor found is surer than what the tag says.
    if (const auto key = numberedKey(xml.attribute("VALUE"))) track.key = key;
  }
}

void TraktorCollection::end(const Take& take) {
  if (std::exchange(isInEntry, false)) take(std::exchange(track, {}));
}

} // namespace velmor
