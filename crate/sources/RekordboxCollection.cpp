#include "crate/sources/RekordboxCollection.h"

#include "base/Number.h"
#include "crate/tracks/CrateDates.h"
#include "crate/tracks/FileAddress.h"

#include <algorithm>

namespace velmor {

namespace {

/// rekordbox writes 0, 51, 102 to 255 for none to five stars.
constexpr int ratingOfStar = 51;

} // namespace

void RekordboxCollection::element(const XmlStream& xml, const Take& take) {
  if (xml.depth() == 1) isInCollection = xml.name() == "COLLECTION";
  if (!isInCollection || xml.depth() != 2 || xml.name() != "TRACK") return;
  CrateTrack track{.title = xml.attribute("Name"),
                   .artist = xml.attribute("Artist"),
                   .album = xml.attribute("Album"),
                   .genre = xml.attribute("Genre"),
                   .file = FileAddress::path(xml.attribute("Location"))};
  track.bpm = std::max(0.0, number::parseDouble(xml.attribute("AverageBpm")).value_or(0));
  track.key = MusicalKey::read(xml.attribute("Tonality"));
  track.rating = std::clamp(
      number::parseInteger<int>(xml.attribute("Rating")).value_or(0) / ratingOfStar, 0, 5);
  track.year = CrateDates::year(xml.attribute("Year"));
  track.added = CrateDates::universalTime(xml.attribute("DateAdded"));
  take(std::move(track));
}

} // namespace velmor
